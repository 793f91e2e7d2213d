#include "popup_dismissal.h"

#include <Elementary.h>

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

} // namespace

void dismiss_at_once(Evas_Object* popup) {
    EFL_OPS_DEFINE(operations, EFL_OBJECT_OP_FUNC(elm_obj_popup_dismiss, reinterpret_cast<void*>(hide)));
    efl_object_override(popup, &operations);
}

} // namespace vell
