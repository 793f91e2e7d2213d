#include "popup.h"

#include "efl_1_26/toolkit/accessible.h"
#include "efl_1_26/toolkit/popup_corrections.h"
#include "toolkit/layout_engine/items_box.h"
#include "toolkit/press/press.h"
#include "widget.h"

#include <platform/vell.h>

#include <algorithm>

namespace {

using vell::Family;
using vell::Item;
using enum vell::ResizePolicy;

struct Popup {
    static constexpr const char* key = "vell/popup";
    ~Popup();

    Evas_Object* object = nullptr;
    Evas_Object* box = nullptr; /**< stacks the content and the row of buttons */
    vell::WeakWidget content;
    Evas_Object* buttons = nullptr;  /**< the row of buttons; null if there is none */
    vell::WeakWidget focused_behind; /**< gets the focus when the popup closes */
};

/** Makes the text in popup buttons as large as in page buttons. */
constexpr int popup_button_zoom = 130;
constexpr double button_height_units = 10.0;
constexpr double button_gap_units = 3.0;
/** Space above and below the content, between the title and the buttons. */
constexpr double content_margin_units = 5.0;

/** The open popups, the topmost last. */
std::vector<Popup*>& open_popups() {
    static std::vector<Popup*> popups;
    return popups;
}

Popup::~Popup() { std::erase(open_popups(), this); }

std::vector<Evas_Object*> items_of(const Popup& popup) {
    std::vector<Evas_Object*> items = vell::items_in(popup.content);
    std::ranges::copy(vell::items_in(popup.buttons), std::back_inserter(items));
    return items;
}

void on_show(void* data, Evas*, Evas_Object* object, void*) {
    vell::answer_press();
    auto* const popup = static_cast<Popup*>(data);
    std::erase(open_popups(), popup);
    open_popups().push_back(popup);
    elm_object_tree_focus_allow_set(object, EINA_TRUE);
    popup->focused_behind = elm_object_focused_object_get(object);
    // Elementary restores the focus inside a popup that is shown again (observed). Show the notification first, so that
    // the items' show callbacks can change the focus.
    evas_object_show(vell::notification_of(object));
    for (Evas_Object* const item : items_of(*popup)) {
        evas_object_hide(item); // show callbacks are called only for hidden items
        evas_object_show(item);
    }
    vell::show_waiting();
    // Without this calculation, widgets would take the focus only some frames later.
    evas_smart_objects_calculate(evas_object_evas_get(object));
}

void on_hide(void* data, Evas*, Evas_Object* object, void*) {
    vell::answer_press();
    auto* const popup = static_cast<Popup*>(data);
    Evas_Object* const behind = popup->focused_behind;
    evas_object_hide(vell::notification_of(object)); // first: otherwise it keeps the focus
    if (std::erase(open_popups(), popup) != 0 && behind != nullptr)
        elm_object_focus_set(behind, EINA_TRUE);
    elm_object_tree_focus_allow_set(object, EINA_FALSE);
    // Hide the items now: items that only `on_show` hides, just before it shows them, would get the focus twice.
    for (Evas_Object* const item : items_of(*popup))
        evas_object_hide(item);
}

/** Replaces the popup's content by `object`, which fills the popup and is at least of this size. */
void set_content(Popup& popup, Evas_Object* object, const vell::Size& size) {
    if (object == popup.content)
        return;
    if (popup.content != nullptr)
        evas_object_del(popup.content);
    popup.content = object;
    vell::attached<Item>(object)->request = {
        .minimum = size, .horizontal = fill_parent, .vertical = fill_parent, .content_is_minimum = true};
    vell::items_box_insert(popup.box, object, 0);
}

void add_button_row(Popup& popup) {
    const int height = elm_vell_unit_to_pixel(button_height_units);
    const int gap = elm_vell_unit_to_pixel(button_gap_units);
    popup.buttons = vell::items_box_add(popup.box, {.arrangement{.type = vell::LayoutType::row, .gap = gap}});
    vell::attach<Item>(popup.buttons) = {.request{.given{0, height}, .horizontal = fill_parent},
                                         .contents = popup.buttons};
    vell::items_box_insert(popup.box, popup.buttons);
}

} // namespace

namespace vell {

bool is_in_front(const Evas_Object* widget) {
    while (widget != nullptr && !is_a(Family::popup, widget))
        widget = elm_object_parent_widget_get(widget);
    return widget == (open_popups().empty() ? nullptr : open_popups().back()->object);
}

bool has_to_wait_for_popup(Evas_Object* widget) {
    const bool is_own = attached<Item>(widget) != nullptr; // not an inner widget of Elementary
    if (!is_own || open_popups().empty() || is_inside(widget, open_popups().back()->object))
        return false;
    open_popups().back()->focused_behind = widget;
    return true;
}

} // namespace vell

Evas_Object* elm_vell_popup_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_popup_add(parent);
    if (vell::adopt(object, Family::popup) == nullptr)
        return nullptr;
    auto& popup = vell::attach<Popup>(object);
    const int margin = elm_vell_unit_to_pixel(content_margin_units);
    popup.object = object;
    popup.box = vell::items_box_add(
        object, {.arrangement{.gap = margin, .padding{0, 0, margin, margin}}, .requests_size = true});
    elm_object_content_set(object, popup.box);
    vell::correct_popup(object);
    evas_object_event_callback_add(object, EVAS_CALLBACK_SHOW, on_show, &popup);
    evas_object_event_callback_add(object, EVAS_CALLBACK_HIDE, on_hide, &popup);
    elm_object_tree_focus_allow_set(object, EINA_FALSE); // not even if a theme change shows its items
    return object;
}

void elm_vell_popup_style_set(Evas_Object* /*popup*/, int /*style*/) {} // there is one style

void elm_vell_popup_title_set(Evas_Object* popup, const char* text) {
    if (!vell::is_a(Family::popup, popup))
        return;
    elm_object_part_text_set(popup, "title,text", vell::markup(text).c_str());
    vell::set_accessible_name(popup, text);
}

void elm_vell_popup_message_set(Evas_Object* popup, const char* text, int width) {
    auto* const state = vell::attached<Popup>(popup);
    if (state == nullptr)
        return;
    Evas_Object* const message = vell::adopt(elm_label_add(popup), Family::message);
    elm_label_line_wrap_set(message, ELM_WRAP_MIXED);
    elm_label_wrap_width_set(message, width);
    elm_object_text_set(message, vell::markup(text).c_str());
    set_content(*state, message, {width, 0});
    efl_access_object_description_set(popup, text);
}

void elm_vell_popup_content_set(Evas_Object* popup, Evas_Object* content, int width, int height) {
    auto* const state = vell::attached<Popup>(popup);
    if (state != nullptr && vell::is_a(Family::layout, content))
        set_content(*state, content, {width, height});
}

void elm_vell_popup_button_set(Evas_Object* popup, Evas_Object* button, int slot) {
    auto* const state = vell::attached<Popup>(popup);
    if (state == nullptr || !vell::is_a(Family::button, button))
        return;
    if (state->buttons == nullptr)
        add_button_row(*state);
    if (std::ranges::count(vell::items_in(state->buttons), button) != 0)
        return;
    elm_vell_button_zoom_set(button, popup_button_zoom);
    auto& request = vell::attached<Item>(button)->request;
    request.horizontal = request.vertical = fill_parent;
    vell::items_box_insert(state->buttons, button, static_cast<std::size_t>(slot) - 1); // slot 0: the end
}
