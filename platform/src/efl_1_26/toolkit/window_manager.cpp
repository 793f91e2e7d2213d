#include "window_manager.h"

#include <Ecore_X.h>

namespace vell {
namespace {

Eina_Bool on_show(void* data, int /*type*/, void* event) {
    auto* const window = static_cast<Evas_Object*>(data);
    const Ecore_X_Window own = elm_win_xwindow_get(window);
    if (static_cast<Ecore_X_Event_Window_Show*>(event)->win != own)
        return ECORE_CALLBACK_PASS_ON;
    // Elementary draws a window only if it has WM_STATE (observed), which not every window manager sets.
    if (ecore_x_icccm_state_get(own) == ECORE_X_WINDOW_STATE_HINT_NONE)
        ecore_x_icccm_state_set(own, ECORE_X_WINDOW_STATE_HINT_NORMAL);
    get_keyboard(window);
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

Ecore_Event_Handler* show_under_any_manager(Evas_Object* window) {
    if (elm_win_xwindow_get(window) == 0)
        return nullptr;
    return ecore_event_handler_add(ECORE_X_EVENT_WINDOW_SHOW, on_show, window);
}

void place_for_user(Evas_Object* window, int x, int y) {
    // Before a window is shown, Ecore sets USPosition only if a move changes the position (observed).
    evas_object_move(window, x + 1, y);
    evas_object_move(window, x, y);
}

void get_keyboard(Evas_Object* window) {
    const Ecore_X_Window own = elm_win_xwindow_get(window);
    if (own == 0)
        return;
    constexpr int by_the_user = 2;
    ecore_x_netwm_client_active_request(ecore_x_window_root_get(own), own, by_the_user, 0);
    ecore_x_window_focus(own); // some window managers ignore the request
}

} // namespace vell
