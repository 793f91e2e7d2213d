// Accessibility and overriding an operation of one object are declared as beta and protected in Elementary 1.26.
#define EFL_BETA_API_SUPPORT
#define EFL_ACCESS_OBJECT_PROTECTED
#define EFL_ACCESS_WIDGET_ACTION_PROTECTED

#include <Efl_Ui.h>
#include <Evas.h>
extern "C" {
#include <efl_access_widget_action.h>
}

#include "accessible_corrections.h"
#include "toolkit/widgets/widget.h"

#include <array>

namespace vell {
namespace {

/** Kept with the widget. */
struct AccessibleStates {
    static constexpr const char* key = "vell/accessible_states";
    Efl_Access_State_Set held = 0;   /**< besides those that Elementary gives it */
    Efl_Access_State_Set lacked = 0; /**< of those that Elementary gives it */
};

constexpr Efl_Access_State_Set set_of(auto... types) { return (... | (Efl_Access_State_Set{1} << types)); }

Efl_Access_State_Set get_states(const Eo* widget, void* /*data*/) {
    const auto& [held, lacked] = *attached<AccessibleStates>(widget);
    return (efl_access_object_state_set_get(efl_super(widget, EFL_OBJECT_OVERRIDE_CLASS)) | held) & ~lacked;
}

const Efl_Access_Action_Data* get_actions(const Eo* widget, void* /*data*/) {
    static constexpr Efl_Access_Action_Data none{};
    if (attached<AccessibleStates>(widget)->lacked != 0)
        return &none;
    return efl_access_widget_action_elm_actions_get(efl_super(widget, EFL_OBJECT_OVERRIDE_CLASS));
}

struct AccessibleEvent {
    const Efl_Event_Description* description;
    void* information;
};

void emit_inside(void*, Evas_Object* widget, void* data) {
    const auto& [description, information] = *static_cast<AccessibleEvent*>(data);
    efl_access_object_event_emit(widget, description, information);
}

/**
 * Where nobody listens to such events, EFL's bridge ends the calls of the callbacks that the widget is in: those of
 * "pressed", when a callback of it sets a text (measured). Here it ends those of an event that has no others.
 */
void emit(Evas_Object* widget, AccessibleEvent event) {
    constexpr const char* own_event = "vell,accessible";
    evas_object_smart_callback_add(widget, own_event, emit_inside, nullptr);
    evas_object_smart_callback_call(widget, own_event, &event);
    evas_object_smart_callback_del(widget, own_event, emit_inside);
}

} // namespace

void correct_accessible_states(Evas_Object* widget) {
    attach<AccessibleStates>(widget);
    EFL_OPS_DEFINE(
        operations, EFL_OBJECT_OP_FUNC(efl_access_object_state_set_get, reinterpret_cast<void*>(get_states)),
        EFL_OBJECT_OP_FUNC(efl_access_widget_action_elm_actions_get, reinterpret_cast<void*>(get_actions)));
    efl_object_override(widget, &operations);
}

void set_accessible_state(Evas_Object* widget, AccessibleState state, bool holds) {
    const bool bars = state == AccessibleState::barred;
    const Efl_Access_State_Set types =
        bars ? set_of(EFL_ACCESS_STATE_TYPE_ENABLED, EFL_ACCESS_STATE_TYPE_SENSITIVE)
             : set_of(state == AccessibleState::busy ? EFL_ACCESS_STATE_TYPE_BUSY
                                                     : EFL_ACCESS_STATE_TYPE_SELECTED);
    const Efl_Access_State_Set before = efl_access_object_state_set_get(widget);
    auto& states = *attached<AccessibleStates>(widget);
    Efl_Access_State_Set& changed = bars ? states.lacked : states.held;
    changed = holds ? changed | types : changed & ~types;
    const Efl_Access_State_Set now = efl_access_object_state_set_get(widget);
    for (const auto type : {EFL_ACCESS_STATE_TYPE_BUSY, EFL_ACCESS_STATE_TYPE_SELECTED,
                            EFL_ACCESS_STATE_TYPE_ENABLED, EFL_ACCESS_STATE_TYPE_SENSITIVE}) {
        Efl_Access_Event_State_Changed_Data data{type, (now & set_of(type)) != 0 ? EINA_TRUE : EINA_FALSE};
        if (((before ^ now) & set_of(type)) != 0)
            emit(widget, {EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED, &data});
    }
}

void say_accessible_name(Evas_Object* widget) {
    static std::array property = std::to_array("i18n_name");
    emit(widget, {EFL_ACCESS_OBJECT_EVENT_PROPERTY_CHANGED, property.data()});
}

} // namespace vell
