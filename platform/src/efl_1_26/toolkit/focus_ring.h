/** The ring around the widget that has the focus. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Draws a ring around whatever has the focus in a window: in every frame it stands where that widget is, and
 * there is none when nothing has the focus.
 */
void ring_the_focus(Evas_Object* window);

/** Has the ring bump, for an arrow leads nowhere: "Left", "Right", "Up" or "Down". */
void bump_ring(Evas_Object* window, const char* arrow);

} // namespace vell
