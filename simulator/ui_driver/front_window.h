/** The window that has the keys. */
#pragma once

#include "keyboard.h"

namespace simulator {

/** Asks its application to close it, as a window manager does for the person at the screen. */
void close_front_window(const Display& display);

/** Destroys it, as any client of the display can. */
void destroy_front_window(const Display& display);

} // namespace simulator
