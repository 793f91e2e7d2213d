#include "common/object_data.h"
#include "efl_1_26/toolkit/accessible.h"
#include "popup.h"
#include "toolkit/press/press.h"
#include "widget.h"

#include <platform/vell.h>

#include <array>

namespace {

/** The result of a button's press, until its next press. */
enum class Work { none, waiting, failed, running };

struct Button {
    static constexpr const char* key = "vell/button";
    std::string text;
    Work work = Work::none;
};

void set_work(Evas_Object* button, Work work) {
    constexpr std::array<const char*, 4> signals{"vell,state,calm", "vell,state,waiting", "vell,state,failed",
                                                 "vell,state,running"};
    vell::attached<Button>(button)->work = work;
    elm_layout_signal_emit(button, signals.at(static_cast<std::size_t>(work)), "vell");
    vell::set_accessible_state(button, EFL_ACCESS_STATE_TYPE_BUSY, work == Work::waiting);
}

/**
 * Shows whether `button` can be used. If the press of another button locks it, the pressed one is shown as running
 * until a press unlocks `button`.
 */
void show_whether_usable(void*, Evas_Object* button, void*) {
    const bool usable = elm_object_focus_allow_get(button) != EINA_FALSE;
    elm_layout_signal_emit(button, usable ? "vell,state,usable" : "vell,state,unusable", "vell");
    vell::answer_press();
    Evas_Object* const pressed = vell::pressed_widget();
    if (vell::is_a(vell::Family::button, pressed) && pressed != button)
        set_work(pressed, usable ? Work::none : Work::running);
}

/** A button that gives up the focus during its press is waiting for something that may block the main loop. */
void on_focus_given_up(void*, Evas_Object* button, void*) {
    if (vell::pressed_widget() != button)
        return;
    vell::answer_press();
    set_work(button, Work::waiting);
    vell::draw_now(button);
}

/** Necessary because the mouse and accessibility actions also reach buttons that cannot take the focus. */
bool can_be_used(const Evas_Object* button) {
    return elm_object_focus_allow_get(button) != EINA_FALSE && vell::is_in_front(button);
}

/**
 * Elementary emits "clicked" once for Return, KP_Enter, the mouse and an accessibility action; all but the last
 * also focus the button.
 */
void on_clicked(void*, Evas_Object* object, void*) {
    if (!can_be_used(object)) {
        vell::nudge(object);
        return;
    }
    elm_object_focus_set(object, EINA_TRUE);
    const Work work = vell::attached<Button>(object)->work;
    if (work == Work::waiting || work == Work::failed)
        set_work(object, Work::none);
    vell::begin_press(object);
    evas_object_smart_callback_call(object, "pressed", nullptr);
    vell::end_press();
}

} // namespace

Evas_Object* elm_vell_button_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_button_add(parent);
    if (object == nullptr)
        return nullptr;
    vell::attach<Button>(object);
    vell::correct_button(object);
    evas_object_smart_callback_add(object, "vell,focus,allowed", show_whether_usable, nullptr);
    evas_object_smart_callback_add(object, "clicked", on_clicked, nullptr);
    evas_object_smart_callback_add(object, "vell,focus,given,up", on_focus_given_up, nullptr);
    return vell::adopt(object, vell::Family::button);
}

void elm_vell_button_style_set(Evas_Object* /*button*/, int /*style*/, int /*substyle*/) {
} // there is one style

void elm_vell_button_text_set(Evas_Object* button, const char* text) {
    auto* const state = vell::attached<Button>(button);
    if (state == nullptr)
        return;
    state->text = text == nullptr ? "" : text;
    elm_object_text_set(button, vell::markup(text).c_str());
    if (state->work == Work::waiting && vell::pressed_widget() == button)
        set_work(button, Work::failed);
    else
        vell::show_renewed(button);
    vell::set_accessible_name(button, text);
}

const char* elm_vell_button_text_get(const Evas_Object* button) {
    const auto* const state = vell::attached<Button>(button);
    return state == nullptr ? "" : state->text.c_str();
}

void elm_vell_button_zoom_set(Evas_Object* button, int percent) {
    if (vell::is_a(vell::Family::button, button) && percent > 0)
        edje_object_text_class_set(elm_layout_edje_get(button), "vell/button", nullptr, -percent);
}
