// In Elementary 1.26, a widget's accessibility interfaces are protected API.
#define EFL_ACCESS_OBJECT_PROTECTED
#define EFL_ACCESS_WIDGET_ACTION_PROTECTED

#include <Efl_Ui.h>
#include <Evas.h>
extern "C" {
#include <efl_access_widget_action.h>
}

#include "accessible.h"
#include "common/object_data.h"

#include <array>
#include <string_view>

namespace vell {
namespace {

/** State attached to a button. */
struct AccessibleStates {
    static constexpr const char* key = "vell/accessible_states";
    Efl_Access_State_Set held = 0; /**< states in addition to Elementary's */
};

constexpr Efl_Access_State_Set set_of(auto... types) { return (... | (Efl_Access_State_Set{1} << types)); }

constexpr Efl_Access_State_Set usable =
    set_of(EFL_ACCESS_STATE_TYPE_ENABLED, EFL_ACCESS_STATE_TYPE_SENSITIVE);

Efl_Access_State_Set get_states(const Eo* button, void* /*data*/) {
    const auto states = efl_access_object_state_set_get(efl_super(button, EFL_OBJECT_OVERRIDE_CLASS));
    const bool is_usable = elm_object_focus_allow_get(button) != EINA_FALSE;
    return (states | attached<AccessibleStates>(button)->held) & ~(is_usable ? 0 : usable);
}

const Efl_Access_Action_Data* get_actions(const Eo* button, void* /*data*/) {
    static constexpr Efl_Access_Action_Data none{};
    if (elm_object_focus_allow_get(button) == EINA_FALSE)
        return &none;
    return efl_access_widget_action_elm_actions_get(efl_super(button, EFL_OBJECT_OVERRIDE_CLASS));
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
 * Emits the event from the only callback of a private event. If an accessibility event has no listeners, EFL's bridge
 * stops whatever event the widget is emitting (observed). Without the private event, a "pressed" callback that sets a
 * text would thus keep the other "pressed" callbacks from being called.
 */
void emit(Evas_Object* widget, AccessibleEvent event) {
    constexpr const char* own_event = "vell,accessible";
    evas_object_smart_callback_add(widget, own_event, emit_inside, nullptr);
    evas_object_smart_callback_call(widget, own_event, &event);
    evas_object_smart_callback_del(widget, own_event, emit_inside);
}

/** Applies `change` and emits state-changed for each changed state. */
template <class Change>
void change_states(Evas_Object* button, Change change) {
    const Efl_Access_State_Set before = efl_access_object_state_set_get(button);
    change();
    const Efl_Access_State_Set now = efl_access_object_state_set_get(button);
    for (const auto type : {EFL_ACCESS_STATE_TYPE_BUSY, EFL_ACCESS_STATE_TYPE_SELECTED,
                            EFL_ACCESS_STATE_TYPE_ENABLED, EFL_ACCESS_STATE_TYPE_SENSITIVE}) {
        Efl_Access_Event_State_Changed_Data data{type, (now & set_of(type)) != 0 ? EINA_TRUE : EINA_FALSE};
        if (((before ^ now) & set_of(type)) != 0)
            emit(button, {EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED, &data});
    }
}

void allow_focus(Eo* button, void* /*data*/, Eina_Bool allowed) {
    change_states(button, [=] {
        efl_ui_widget_focus_allow_set(efl_super(button, EFL_OBJECT_OVERRIDE_CLASS), allowed);
    });
    evas_object_smart_callback_call(button, "vell,focus,allowed", nullptr);
}

} // namespace

void set_accessible_name(Evas_Object* widget, const char* name) {
    efl_access_object_i18n_name_set(widget, name);
    static std::array property = std::to_array("i18n_name");
    emit(widget, {EFL_ACCESS_OBJECT_EVENT_PROPERTY_CHANGED, property.data()});
}

void label_accessible(Evas_Object* widget, Evas_Object* text) {
    const char* const name = efl_access_object_i18n_name_get(text);
    if (name == nullptr || !std::string_view(name).ends_with(": "))
        return;
    efl_access_object_relationship_append(widget, EFL_ACCESS_RELATION_TYPE_LABELLED_BY, text);
    efl_access_object_relationship_append(text, EFL_ACCESS_RELATION_TYPE_LABEL_FOR, widget);
}

void correct_button(Evas_Object* button) {
    attach<AccessibleStates>(button);
    EFL_OPS_DEFINE(
        operations, EFL_OBJECT_OP_FUNC(efl_access_object_state_set_get, reinterpret_cast<void*>(get_states)),
        EFL_OBJECT_OP_FUNC(efl_access_widget_action_elm_actions_get, reinterpret_cast<void*>(get_actions)),
        EFL_OBJECT_OP_FUNC(efl_ui_widget_focus_allow_set, reinterpret_cast<void*>(allow_focus)));
    efl_object_override(button, &operations);
}

void set_accessible_state(Evas_Object* button, Efl_Access_State_Type state, bool holds) {
    auto* const states = attached<AccessibleStates>(button);
    if (states != nullptr)
        change_states(button, [=] {
            states->held = holds ? states->held | set_of(state) : states->held & ~set_of(state);
        });
}

} // namespace vell
