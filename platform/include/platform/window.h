/** The window call of the television's toolkit that Debian's Elementary 1.26 lacks. */
#pragma once

#include <Elementary.h>

/**
 * Adds an auxiliary hint for the window manager to a window.
 *
 * @param window the window.
 * @param hint   the hint's name, for example "wm.policy.win.zone.desk.layout.mode".
 * @param value  the hint's value, for example "fullscreen".
 * @return the hint's number, or -1 if the window does not support hints.
 */
int elm_win_aux_hint_add(Evas_Object* window, const char* hint, const char* value);
