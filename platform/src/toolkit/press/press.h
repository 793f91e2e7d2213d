/** Visible feedback for presses and their results. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Begins the press of a widget and draws its pressed look before returning: the call that follows may block the main
 * loop. At most one press is in progress.
 */
void begin_press(Evas_Object* widget);

/**
 * Ends the press. The pressed look lasts at least 120 ms. If the press had no effect, the widget then shows that.
 */
void end_press();

/** Returns the widget whose press is in progress; null if none is, or if the widget is deleted. */
Evas_Object* pressed_widget();

/** Records that the latest press had an effect; the widget then does not show a failure. */
void answer_press();

/** Highlights a widget whose text was just set, if a press is in progress and the widget was already visible. */
void show_renewed(Evas_Object* widget);

/** Nudges a widget, to show that a key had no effect. */
void nudge(Evas_Object* widget);

/** Draws a frame with the widget's current look before returning. */
void draw_now(const Evas_Object* widget);

} // namespace vell
