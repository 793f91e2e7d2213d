#include "window_manager.h"

#include <Ecore_X.h>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>

namespace vell {
namespace {

/** Whether anyone has the root window's children redirected: one program at a time can, while it lives. */
bool has_window_manager(Ecore_X_Window root) {
    Ecore_X_Window_Attributes attributes{};
    ecore_x_window_attributes_get(root, &attributes);
    return (attributes.event_mask.all & ECORE_X_EVENT_MASK_WINDOW_CHILD_CONFIGURE) != 0;
}

bool is_supported(Ecore_X_Window root, Ecore_X_Atom request) {
    Ecore_X_Atom* names = nullptr;
    int count = 0;
    if (ecore_x_netwm_supported_get(root, &names, &count) == EINA_FALSE)
        return false;
    const std::unique_ptr<Ecore_X_Atom, decltype(&std::free)> owner(names, &std::free);
    const std::span<Ecore_X_Atom> supported(names, static_cast<std::size_t>(count));
    return std::ranges::find(supported, request) != supported.end();
}

/** Whether a window manager is there that gives the keyboard to the window that asks for it. */
bool has_activating_manager(Ecore_X_Window root) {
    // The root window names a window of the manager's, which names itself; one that has gone may have left
    // the first behind.
    Ecore_X_Window named = 0;
    Ecore_X_Window itself = 0;
    const auto check = ECORE_X_ATOM_NET_SUPPORTING_WM_CHECK;
    return has_window_manager(root) && ecore_x_window_prop_window_get(root, check, &named, 1) == 1 &&
           ecore_x_window_prop_window_get(named, check, &itself, 1) == 1 && named == itself &&
           is_supported(root, ECORE_X_ATOM_NET_ACTIVE_WINDOW);
}

Eina_Bool on_show(void* data, int /*type*/, void* event) {
    auto* const window = static_cast<Evas_Object*>(data);
    const Ecore_X_Window own = elm_win_xwindow_get(window);
    if (static_cast<Ecore_X_Event_Window_Show*>(event)->win != own)
        return ECORE_CALLBACK_PASS_ON;
    // Elementary draws no window without the state that a window manager writes on it (measured), and not
    // every window manager writes it.
    if (ecore_x_icccm_state_get(own) == ECORE_X_WINDOW_STATE_HINT_NONE)
        ecore_x_icccm_state_set(own, ECORE_X_WINDOW_STATE_HINT_NORMAL);
    vell::get_keyboard(window);
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

Ecore_Event_Handler* show_under_any_manager(Evas_Object* window) {
    if (elm_win_xwindow_get(window) == 0)
        return nullptr;
    return ecore_event_handler_add(ECORE_X_EVENT_WINDOW_SHOW, on_show, window);
}

void place_for_user(Evas_Object* window, int x, int y) {
    // Ecore sets the hint with a move before the window is shown, but not with one to where the window is (measured).
    evas_object_move(window, x + 1, y);
    evas_object_move(window, x, y);
}

void get_keyboard(Evas_Object* window) {
    const Ecore_X_Window own = elm_win_xwindow_get(window);
    if (own == 0)
        return;
    const Ecore_X_Window root = ecore_x_window_root_get(own);
    constexpr int by_the_user = 2;
    if (has_activating_manager(root))
        ecore_x_netwm_client_active_request(root, own, by_the_user, 0);
    else
        ecore_x_window_focus(own);
}

} // namespace vell
