#include "button.h"

#include "accessible.h"
#include "efl_1_26/toolkit/accessible_corrections.h"
#include "efl_1_26/toolkit/focus_bar.h"
#include "popup.h"
#include "widget.h"

#include <platform/vell.h>

namespace {

struct Button {
    static constexpr const char* key = "vell/button";
    std::string text;
};

void show_whether_usable(Evas_Object* button) {
    const bool usable = elm_object_focus_allow_get(button) != EINA_FALSE;
    elm_layout_signal_emit(button, usable ? "vell,state,usable" : "vell,state,unusable", "vell");
    vell::set_accessible_state(button, vell::AccessibleState::barred, !usable);
}

/** A mouse and an accessibility action reach a button that the focus cannot. */
bool can_be_used(const Evas_Object* button) {
    return elm_object_focus_allow_get(button) != EINA_FALSE && vell::is_in_front(button);
}

/**
 * Elementary says "clicked" once for Return, KP_Enter, the mouse and an accessibility action alike; only the
 * last leaves the focus where it was.
 */
void on_clicked(void*, Evas_Object* object, void*) {
    if (!can_be_used(object))
        return;
    elm_object_focus_set(object, EINA_TRUE);
    evas_object_smart_callback_call(object, "pressed", nullptr);
}

} // namespace

namespace vell {

void mark_chosen(Evas_Object* button, bool chosen) {
    elm_layout_signal_emit(button, chosen ? "vell,state,chosen" : "vell,state,unchosen", "vell");
    set_accessible_state(button, AccessibleState::chosen, chosen);
}

} // namespace vell

Evas_Object* elm_vell_button_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_button_add(parent);
    if (object == nullptr)
        return nullptr;
    vell::attach<Button>(object);
    vell::correct_accessible_states(object);
    vell::watch_focus_bar(object, show_whether_usable);
    evas_object_smart_callback_add(object, "clicked", on_clicked, nullptr);
    return vell::adopt(object, vell::Family::button);
}

void elm_vell_button_style_set(Evas_Object* button, int style, int substyle) {
    // (0, 0) is the one style there is: Elementary's default in the toolkit's theme.
    if (vell::find(button, vell::Family::button) != nullptr && style == 0 && substyle == 0)
        elm_object_style_set(button, "default");
}

void elm_vell_button_text_set(Evas_Object* button, const char* text) {
    auto* const state = vell::attached<Button>(button);
    if (state == nullptr)
        return;
    state->text = text == nullptr ? "" : text;
    elm_object_text_set(button, vell::markup(text).c_str());
    vell::set_accessible_name(button, text);
}

const char* elm_vell_button_text_get(const Evas_Object* button) {
    const auto* const state = vell::attached<Button>(button);
    return state == nullptr ? "" : state->text.c_str();
}

void elm_vell_button_zoom_set(Evas_Object* button, int percent) {
    if (vell::find(button, vell::Family::button) != nullptr && percent > 0)
        edje_object_text_class_set(elm_layout_edje_get(button), "vell/button", nullptr, -percent);
}
