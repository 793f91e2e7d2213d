/** The window that has the keys. */
#pragma once

/** Asks its application to close it, as a window manager does for the person at the screen. */
void close_front_window();
