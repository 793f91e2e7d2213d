/** Makes the window work under any window manager, and without one. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Makes the window drawn and gives it the keyboard each time it is mapped.
 *
 * @return the handler to delete with the window; null where there is no X server.
 */
Ecore_Event_Handler* show_under_any_manager(Evas_Object* window);

/** Moves a window that is not shown yet, with a user-specified position (USPosition): for any other window, a window manager
 * may ask the user for a position before it shows the window. */
void place_for_user(Evas_Object* window, int x, int y);

/** Requests the keyboard from the window manager, if there is one, and sets the input focus. */
void get_keyboard(Evas_Object* window);

} // namespace vell
