#include "popup.h"

#include "accessible.h"
#include "efl_1_26/toolkit/popup_corrections.h"
#include "layout.h"
#include "toolkit/arranging/items_box.h"
#include "toolkit/press/press.h"
#include "toolkit/window/manager.h"

#include <platform/vell.h>

#include <algorithm>
#include <array>

namespace {

using vell::Area;
using vell::Size;

constexpr std::array<const char*, 3> button_places = {"button1", "button2", "button3"};

struct Popup {
    static constexpr const char* key = "vell/popup";
    ~Popup();

    Evas_Object* object = nullptr;
    Evas_Object* box = nullptr; /**< gives the content or the message its size */
    // Null once the widget is gone:
    std::array<Evas_Object*, button_places.size()> buttons{};
    Evas_Object* focused_behind = nullptr; /**< what gets the focus when it closes */
};

/** A popup's buttons have text as large as a page's. */
constexpr int popup_button_zoom = 130;

/** The open popups, the one on top last. */
std::vector<Popup*>& open_popups() {
    static std::vector<Popup*> popups;
    return popups;
}

Popup::~Popup() {
    std::erase(open_popups(), this);
    for (Evas_Object*& button : buttons)
        vell::point_weakly(button, nullptr);
    vell::point_weakly(focused_behind, nullptr);
}

std::vector<Evas_Object*> items_of(const Popup& popup) {
    std::vector<Evas_Object*> items;
    for (const Evas_Object* const content : vell::items_in(popup.box))
        std::ranges::copy(vell::layout_items(content), std::back_inserter(items));
    std::ranges::copy_if(popup.buttons, std::back_inserter(items),
                         [](const Evas_Object* button) { return button != nullptr; });
    return items;
}

void on_show(void* data, Evas*, Evas_Object* object, void*) {
    vell::answer_press();
    auto* const popup = static_cast<Popup*>(data);
    std::erase(open_popups(), popup);
    open_popups().push_back(popup);
    elm_object_tree_focus_allow_set(object, EINA_TRUE);
    vell::point_weakly(popup->focused_behind, elm_object_focused_object_get(object));
    // Elementary gives a popup that appears again the focus it had when it went (measured). That is done
    // first, so that the show callbacks have the last word.
    evas_object_show(vell::notification_of(object));
    for (Evas_Object* const item : items_of(*popup)) {
        evas_object_hide(item); // so that its show callbacks are called though it may be shown already
        evas_object_show(item);
    }
    vell::Manager::instance().show_waiting();
    // What has not been laid out yet would take the focus only some frames later.
    evas_smart_objects_calculate(evas_object_evas_get(object));
}

void on_hide(void* data, Evas*, Evas_Object* object, void*) {
    vell::answer_press();
    auto* const popup = static_cast<Popup*>(data);
    Evas_Object* const behind = popup->focused_behind;
    evas_object_hide(vell::notification_of(object)); // first, or it keeps the focus
    if (std::erase(open_popups(), popup) != 0 && behind != nullptr)
        elm_object_focus_set(behind, EINA_TRUE);
    elm_object_tree_focus_allow_set(object, EINA_FALSE);
    // Hidden here rather than when the popup appears again, or they would get its focus twice then.
    for (Evas_Object* const item : items_of(*popup))
        evas_object_hide(item);
}

/** Space above and below the content, between the title and the buttons. */
int content_margin() {
    constexpr double units = 5.0;
    return vell::Manager::instance().rescaled(elm_vell_unit_to_pixel(units));
}

std::vector<Area> fill_between_margins(const Area& area, std::span<Evas_Object* const> items) {
    const Area inside{area.x, area.y + content_margin(), area.width, area.height - 2 * content_margin()};
    std::vector<Area> areas(items.size(), inside);
    return areas;
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
    if (item.holder == popup.box)
        return;
    elm_box_clear(popup.box);
    vell::items_box_append(popup.box, item);
    vell::Manager::instance().show_later(item.object);
}

} // namespace

namespace vell {

bool is_in_front(const Evas_Object* widget) {
    while (widget != nullptr && find(widget, Family::popup) == nullptr)
        widget = elm_object_parent_widget_get(widget);
    return widget == (open_popups().empty() ? nullptr : open_popups().back()->object);
}

bool has_to_wait_for_popup(Evas_Object* widget) {
    const bool is_own = find(widget) != nullptr; // not a part of Elementary's
    if (!is_own || open_popups().empty() || is_inside(widget, open_popups().back()->object))
        return false;
    point_weakly(open_popups().back()->focused_behind, widget);
    return true;
}

} // namespace vell

Evas_Object* elm_vell_popup_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_popup_add(parent);
    if (object == nullptr)
        return nullptr;
    auto& popup = vell::attach<Popup>(object);
    popup.object = object;
    popup.box = vell::items_box_add(object, fill_between_margins, size_with_margins);
    elm_object_content_set(object, popup.box);
    vell::correct_popup(object);
    evas_object_event_callback_add(object, EVAS_CALLBACK_SHOW, on_show, &popup);
    evas_object_event_callback_add(object, EVAS_CALLBACK_HIDE, on_hide, &popup);
    elm_object_tree_focus_allow_set(object, EINA_FALSE); // also when its items are shown in a new theme
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

void elm_vell_popup_message_set(Evas_Object* popup, const char* text, int width) {
    auto* const state = vell::attached<Popup>(popup);
    if (state == nullptr)
        return;
    Evas_Object* const message = vell::adopt(elm_label_add(popup), vell::Family::message);
    elm_label_line_wrap_set(message, ELM_WRAP_MIXED);
    elm_label_wrap_width_set(message, width);
    elm_object_text_set(message, vell::markup(text).c_str());
    vell::find(message)->request.given = {width, 0};
    set_content(*state, *vell::find(message));
    vell::set_accessible_description(popup, text);
}

void elm_vell_popup_content_set(Evas_Object* popup, Evas_Object* content, int width, int height) {
    auto* const state = vell::attached<Popup>(popup);
    vell::Widget* const widget = vell::find(content, vell::Family::layout);
    if (state == nullptr || widget == nullptr)
        return;
    widget->request.given = {width, height};
    set_content(*state, *widget);
}

void elm_vell_popup_button_set(Evas_Object* popup, Evas_Object* button, int slot) {
    auto* const state = vell::attached<Popup>(popup);
    if (state == nullptr || vell::find(button, vell::Family::button) == nullptr)
        return;
    auto& buttons = state->buttons;
    if (std::ranges::count(buttons, button) != 0)
        return;
    const auto free_place =
        std::distance(buttons.begin(), std::find(buttons.begin(), buttons.end(), nullptr));
    const auto place = static_cast<std::size_t>(slot > 0 ? slot - 1 : free_place);
    if (place >= buttons.size())
        return;
    elm_vell_button_zoom_set(button, popup_button_zoom);
    elm_object_part_content_set(popup, button_places.at(place), button);
    vell::point_weakly(buttons.at(place), button);
}
