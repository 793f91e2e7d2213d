/** The window on a screen with whatever window manager, or with none. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Has the window drawn, and gives it the keyboard, whenever it appears.
 *
 * @return the handler to delete with the window; null where there is no X server.
 */
Ecore_Event_Handler* show_under_any_manager(Evas_Object* window);

/** Moves a window that is not shown yet, as the user's own choice (USPosition): a window manager may ask the user for the
 * place of any other window, and shows it only then. */
void place_for_user(Evas_Object* window, int x, int y);

/** Asks the window manager, if there is one, to give the window the keyboard, and takes it. */
void get_keyboard(Evas_Object* window);

} // namespace vell
