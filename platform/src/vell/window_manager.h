/** What a window needs on a screen without a window manager. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Whether a window manager runs on the window's screen; true where there is no X server to ask. */
bool has_window_manager(Evas_Object* window);

/**
 * Lets the window do without a window manager: Elementary draws no window that nobody manages (measured), so
 * it is taken out of management and takes the keyboard when it appears.
 *
 * @return the handler to delete with the window.
 */
Ecore_Event_Handler* do_without_window_manager(Evas_Object* window);

} // namespace vell
