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

/** Has the window get the keyboard: the window manager gives it, or the window takes it. */
void get_keyboard(Evas_Object* window);

} // namespace vell
