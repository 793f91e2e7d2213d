// In Elementary 1.26, the operations overridden here are protected API.
#define EFL_UI_FOCUS_LAYER_PROTECTED
#define EFL_UI_WIDGET_PROTECTED

#include <Efl_Ui.h>
#include <Elementary.h>

#include "popup_corrections.h"

#include <string_view>

// The method behind `elm_popup_dismiss`; Elementary exports it without a declaration.
extern "C" void elm_obj_popup_dismiss(Eo* popup);

namespace vell {

Evas_Object* notification_of(Evas_Object* popup) {
    Eina_List* const members = evas_object_smart_members_get(popup);
    Evas_Object* notification = nullptr;
    for (const Eina_List* node = members; node != nullptr; node = eina_list_next(node)) {
        auto* const member = static_cast<Evas_Object*>(eina_list_data_get(node));
        if (std::string_view(evas_object_type_get(member)) == "elm_notify")
            notification = member;
    }
    eina_list_free(members);
    return notification;
}

namespace {

void hide(Eo* popup, void*) {
    evas_object_hide(popup);
    evas_object_smart_callback_call(popup, "dismissed", nullptr);
}

/** Redirects the window's focus to the notification, or back to the window's own history. */
void turn_focus(Eo* notification, void*, Eina_Bool to_notification) {
    if (to_notification != EINA_FALSE) {
        // An empty notification has a focus placeholder, which it drops one iteration after the first item is
        // registered, even if that item is gone by then (observed). Unregistering any item, even one that is not
        // inside, restores the placeholder.
        efl_ui_focus_manager_calc_unregister(notification, efl_ui_widget_parent_get(notification));
        efl_ui_focus_layer_enable_set(efl_super(notification, EFL_OBJECT_OVERRIDE_CLASS), EINA_TRUE);
        return;
    }
    Eo* const window = efl_ui_focus_object_focus_manager_get(notification);
    if (window == nullptr)
        return;
    if (efl_ui_focus_manager_redirect_get(window) == notification)
        efl_ui_focus_manager_redirect_set(window, nullptr);
    efl_ui_focus_manager_calc_unregister(window, notification);
}

Eina_Error apply_theme(Eo* popup, void*) {
    elm_object_mirrored_set(popup, elm_config_mirrored_get());
    return efl_ui_widget_theme_apply(efl_super(popup, EFL_OBJECT_OVERRIDE_CLASS));
}

} // namespace

void correct_popup(Evas_Object* popup) {
    EFL_OPS_DEFINE(popup_operations, EFL_OBJECT_OP_FUNC(elm_obj_popup_dismiss, reinterpret_cast<void*>(hide)),
                   EFL_OBJECT_OP_FUNC(efl_ui_widget_theme_apply, reinterpret_cast<void*>(apply_theme)));
    efl_object_override(popup, &popup_operations);
    EFL_OPS_DEFINE(notification_operations,
                   EFL_OBJECT_OP_FUNC(efl_ui_focus_layer_enable_set, reinterpret_cast<void*>(turn_focus)));
    efl_object_override(notification_of(popup), &notification_operations);
}

} // namespace vell
