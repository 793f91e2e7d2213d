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
 * Ends the press. The pressed look lasts at least 120 ms; after that, the widget shows if the press had no effect.
 */
void end_press();

/** Returns the widget whose press is in progress; null if none is, or if the widget is deleted. */
Evas_Object* pressed_widget();

/** Records that the latest press had an effect, which suppresses the refused mark. */
void answer_press();

/** Highlights a widget whose text was just set, during a press and if the widget was visible before. */
void show_renewed(Evas_Object* widget);

/** Nudges a widget, to show that a key had no effect. */
void nudge(Evas_Object* widget);

/** Draws a frame with the widget's current look before returning. */
void draw_now(const Evas_Object* widget);

} // namespace vell
