/** The one window call of the television's toolkit that Debian's Elementary 1.26 lacks. */
#pragma once

#include <Elementary.h>

/**
 * Gives the window an auxiliary hint for the window manager.
 *
 * @param window the window.
 * @param hint   the hint's name, for example "wm.policy.win.zone.desk.layout.mode".
 * @param value  the hint's value, for example "fullscreen".
 * @return the hint's number, or -1 when the window cannot take one.
 */
int elm_win_aux_hint_add(Evas_Object* window, const char* hint, const char* value);
