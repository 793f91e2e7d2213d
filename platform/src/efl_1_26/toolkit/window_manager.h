/** Makes the window work with any window manager, and without one. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Makes Elementary draw the window, and gives it the keyboard, each time it is mapped.
 *
 * @return the handler to delete with the window; null without an X server.
 */
Ecore_Event_Handler* show_under_any_manager(Evas_Object* window);

/** Sets a user-specified position (USPosition) before the window is shown; otherwise a window manager may ask the user to
 * place the window. */
void place_for_user(Evas_Object* window, int x, int y);

/** Requests the keyboard from the window manager, if there is one, and sets the input focus. */
void get_keyboard(Evas_Object* window);

} // namespace vell
