// Registration with the focus manager is declared as beta and protected in Elementary 1.26.
#define EFL_BETA_API_SUPPORT
#define EFL_UI_WIDGET_PROTECTED

#include <Efl_Ui.h>

#include "spinner_focus.h"

namespace vell {
namespace {

/** Passes over the step of Elementary that turns the spinner into a parent of its inner buttons. */
Eina_Bool register_as_widget(Eo* spinner, void*, Efl_Ui_Widget_Focus_State current,
                             Efl_Ui_Widget_Focus_State* configured, Efl_Ui_Widget* redirect) {
    configured->logical = EINA_FALSE;
    return efl_ui_widget_focus_state_apply(efl_super(spinner, EFL_UI_FOCUS_COMPOSITION_MIXIN), current,
                                           configured, redirect);
}

/** Says "focused" as Elementary's other widgets do; a spinner says nothing (measured). */
void say_focused(void*, const Efl_Event* event) {
    auto* const spinner = static_cast<Evas_Object*>(event->object);
    if (efl_ui_focus_object_focus_get(spinner) != EINA_FALSE)
        evas_object_smart_callback_call(spinner, "focused", nullptr);
}

} // namespace

void hold_focus_itself(Evas_Object* spinner) {
    EFL_OPS_DEFINE(operations, EFL_OBJECT_OP_FUNC(efl_ui_widget_focus_state_apply,
                                                  reinterpret_cast<void*>(register_as_widget)));
    efl_object_override(spinner, &operations);
    efl_event_callback_add(spinner, EFL_UI_FOCUS_OBJECT_EVENT_FOCUS_CHANGED, say_focused, nullptr);
}

} // namespace vell
