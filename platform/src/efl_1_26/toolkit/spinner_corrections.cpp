// In Elementary 1.26, registration with the focus manager and accessible values are protected API.
#define EFL_ACCESS_VALUE_PROTECTED
#define EFL_UI_WIDGET_PROTECTED

#include <Efl_Ui.h>
extern "C" {
#include <efl_access_value.eo.h>
}

#include "common/object_data.h"
#include "spinner_corrections.h"

#include <cmath>

namespace vell {
namespace {

bool is_behind_popup(const Eo* spinner) {
    const Eo* const popup = efl_ui_focus_manager_redirect_get(elm_object_top_widget_get(spinner));
    return popup != nullptr && !is_inside(spinner, popup);
}

/** Skips the class that registers the spinner as a parent of its inner buttons. */
Eina_Bool register_as_widget(Eo* spinner, void*, Efl_Ui_Widget_Focus_State current,
                             Efl_Ui_Widget_Focus_State* configured, Efl_Ui_Widget* redirect) {
    configured->logical = EINA_FALSE;
    return efl_ui_widget_focus_state_apply(efl_super(spinner, EFL_UI_FOCUS_COMPOSITION_MIXIN), current,
                                           configured, redirect);
}

Eina_Bool set_number(Eo* spinner, void*, double number, const char* /*text*/) {
    double low = 0.0;
    double high = 0.0;
    efl_ui_range_limits_get(spinner, &low, &high);
    const bool is_between = number >= low && number <= high; // false for NaN
    if (!is_between || is_behind_popup(spinner) || efl_ui_widget_disabled_get(spinner) != EINA_FALSE)
        return EINA_FALSE;
    efl_ui_range_value_set(spinner, std::round(number));
    evas_object_smart_callback_call(spinner, "changed", nullptr);
    return EINA_TRUE;
}

} // namespace

void correct_spinner(Evas_Object* spinner) {
    EFL_OPS_DEFINE(
        operations,
        EFL_OBJECT_OP_FUNC(efl_ui_widget_focus_state_apply, reinterpret_cast<void*>(register_as_widget)),
        EFL_OBJECT_OP_FUNC(efl_access_value_and_text_set, reinterpret_cast<void*>(set_number)));
    efl_object_override(spinner, &operations);
}

} // namespace vell
