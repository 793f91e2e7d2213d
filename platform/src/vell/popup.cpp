#include "popup.h"

#include "accessible.h"
#include "items_box.h"
#include "layout.h"
#include "manager.h"

#include <platform/vell.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using vell::Area;
using vell::Size;

struct Popup {
    static constexpr const char* key = "vell/popup";
    ~Popup();

    Evas_Object* object = nullptr;
    Evas_Object* box = nullptr;            /**< gives the content or the message its size */
    std::vector<Evas_Object*> buttons;     /**< in their places, first to last */
    Evas_Object* focused = nullptr;        /**< what in it had the focus last; weak */
    Evas_Object* focused_before = nullptr; /**< what had the focus when it was shown; weak */
};

constexpr std::array<const char*, 3> button_places = {"button1", "button2", "button3"};

/** A popup's buttons have text as large as a page's. */
constexpr int popup_button_zoom = 130;

/** The open popups, the one on top last. */
std::vector<Popup*>& open_popups() {
    static std::vector<Popup*> popups;
    return popups;
}

/** Points `place` to `widget`, and to nothing once the widget is gone. */
void point_weakly(Evas_Object*& place, Evas_Object* widget) {
    if (place != nullptr)
        efl_wref_del(place, &place);
    place = widget;
    if (place != nullptr)
        efl_wref_add(place, &place);
}

Popup::~Popup() {
    std::erase(open_popups(), this);
    point_weakly(focused, nullptr);
    point_weakly(focused_before, nullptr);
}

bool is_inside(const Evas_Object* widget, const Evas_Object* popup) {
    while (widget != nullptr && widget != popup)
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

/** Shows an object anew, so that its show callbacks are called though it may be shown already. */
void show_anew(Evas_Object* object) {
    evas_object_hide(object);
    evas_object_show(object);
}

void on_show(void* data, Evas*, Evas_Object* object, void*) {
    auto* const popup = static_cast<Popup*>(data);
    std::erase(open_popups(), popup);
    open_popups().push_back(popup);
    point_weakly(popup->focused_before, elm_object_focused_object_get(object));
    vell::Manager::instance().show_waiting();
    Eina_List* const contents = elm_box_children_get(popup->box);
    for (const Eina_List* node = contents; node != nullptr; node = eina_list_next(node))
        for (Evas_Object* const item :
             vell::layout_items(static_cast<Evas_Object*>(eina_list_data_get(node))))
            show_anew(item);
    eina_list_free(contents);
    for (Evas_Object* const button : popup->buttons)
        show_anew(button);
}

void on_hide(void* data, Evas*, Evas_Object*, void*) {
    auto* const popup = static_cast<Popup*>(data);
    const bool was_open = std::erase(open_popups(), popup) != 0;
    if (was_open && popup->focused_before != nullptr)
        elm_object_focus_set(popup->focused_before, EINA_TRUE);
}

/** Space above and below the content, between the title and the buttons. */
int content_margin() {
    constexpr double units = 4.0;
    return vell::Manager::instance().rescaled(elm_vell_unit_to_pixel(units));
}

std::vector<Area> fill_between_margins(const Area& area, std::span<Evas_Object* const> items) {
    const Area inside{area.x, area.y + content_margin(), area.width, area.height - 2 * content_margin()};
    return std::vector<Area>(items.size(), inside);
}

Size size_with_margins(std::span<Evas_Object* const> items) {
    Size size;
    for (Evas_Object* const item : items) {
        const vell::ItemRequest request = vell::current_request(item);
        size.width = std::max({size.width, request.given.width, request.content.width});
        size.height = std::max({size.height, request.given.height, request.content.height});
    }
    size.height += 2 * content_margin();
    return size;
}

/** Makes the popup's content a box that holds `item` in its whole, at the size that the item was given. */
void set_content(Popup& popup, vell::Widget& item) {
    elm_box_clear(popup.box);
    vell::items_box_append(popup.box, item);
    vell::Manager::instance().show_later(item.object);
}

} // namespace

namespace vell {

void keep_focus_in_popup(void*, Evas_Object* widget, void*) {
    if (open_popups().empty())
        return;
    Popup* const top = open_popups().back();
    if (is_inside(widget, top->object))
        point_weakly(top->focused, widget);
    else if (top->focused != nullptr) {
        point_weakly(top->focused_before, widget);
        elm_object_focus_set(top->focused, EINA_TRUE);
    }
}

} // namespace vell

Evas_Object* elm_vell_popup_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_popup_add(parent);
    if (object == nullptr)
        return nullptr;
    Popup& popup = vell::attach<Popup>(object);
    popup.object = object;
    popup.box = vell::items_box_add(object, fill_between_margins, size_with_margins);
    elm_object_content_set(object, popup.box);
    evas_object_event_callback_add(object, EVAS_CALLBACK_SHOW, on_show, &popup);
    evas_object_event_callback_add(object, EVAS_CALLBACK_HIDE, on_hide, &popup);
    return vell::adopt(object, vell::Family::popup);
}

void elm_vell_popup_style_set(Evas_Object* popup, int style) {
    // One style is drawn: 0, Elementary's default in the toolkit's theme.
    if (vell::find(popup, vell::Family::popup) != nullptr && style == 0)
        elm_object_style_set(popup, "default");
}

void elm_vell_popup_title_set(Evas_Object* popup, const char* text) {
    if (vell::find(popup, vell::Family::popup) == nullptr)
        return;
    elm_object_part_text_set(popup, "title,text", vell::markup(text).c_str());
    vell::set_accessible_name(popup, text);
}

void elm_vell_popup_message_set(Evas_Object* object, const char* text, int width) {
    auto* const popup = vell::attached<Popup>(object);
    if (popup == nullptr)
        return;
    Evas_Object* const message = vell::adopt(elm_label_add(object), vell::Family::message);
    elm_label_line_wrap_set(message, ELM_WRAP_WORD);
    elm_label_wrap_width_set(message, width);
    elm_object_text_set(message, vell::markup(text).c_str());
    evas_object_smart_calculate(message); // its height is known from here on
    vell::find(message)->request.given = {width, 0};
    set_content(*popup, *vell::find(message));
}

void elm_vell_popup_content_set(Evas_Object* object, Evas_Object* content, int width, int height) {
    auto* const popup = vell::attached<Popup>(object);
    vell::Widget* const widget = vell::find(content, vell::Family::layout);
    if (popup == nullptr || widget == nullptr)
        return;
    widget->request.given = {width, height};
    set_content(*popup, *widget);
}

void elm_vell_popup_button_set(Evas_Object* object, Evas_Object* button, int slot) {
    auto* const popup = vell::attached<Popup>(object);
    if (popup == nullptr || vell::find(button, vell::Family::button) == nullptr)
        return;
    const std::size_t place = slot > 0 ? static_cast<std::size_t>(slot) - 1 : popup->buttons.size();
    if (place >= button_places.size())
        return;
    elm_vell_button_zoom_set(button, popup_button_zoom);
    elm_object_part_content_set(object, button_places.at(place), button);
    popup->buttons.push_back(button);
}
