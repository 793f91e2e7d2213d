#include "window_manager.h"

#include <Ecore_X.h>

namespace vell {

bool has_window_manager(Evas_Object* window) {
    const Ecore_X_Window own = elm_win_xwindow_get(window);
    if (own == 0)
        return true;
    Ecore_X_Window manager = 0;
    return ecore_x_window_prop_window_get(ecore_x_window_root_get(own), ECORE_X_ATOM_NET_SUPPORTING_WM_CHECK,
                                          &manager, 1) == 1;
}

Ecore_Event_Handler* do_without_window_manager(Evas_Object* window) {
    elm_win_override_set(window, EINA_TRUE);
    return ecore_event_handler_add(
        ECORE_X_EVENT_WINDOW_SHOW,
        [](void* data, int, void* event) -> Eina_Bool {
            const Ecore_X_Window own = elm_win_xwindow_get(static_cast<Evas_Object*>(data));
            if (static_cast<Ecore_X_Event_Window_Show*>(event)->win == own)
                ecore_x_window_focus(own);
            return ECORE_CALLBACK_PASS_ON;
        },
        window);
}

} // namespace vell
