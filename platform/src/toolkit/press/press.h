/** What a press led to, so that a person at three metres sees that it arrived and what came of it. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Begins the press of a widget; its pressed look is on the screen when this returns, for a call that follows may hold the
 * main loop up. One press lasts at a time.
 */
void begin_press(Evas_Object* widget);

/**
 * Ends the press. The pressed look goes 120 ms after it came at the earliest; when nothing came of the press, the widget
 * shows that then.
 */
void end_press();

/** The widget whose press lasts; null when none does, or the widget is gone. */
Evas_Object* pressed_widget();

/** Notes that something came of the newest press; until its pressed look goes, that keeps the refused mark away. */
void answer_press();

/** Has a widget that got its text show that it is new: in a press, and when the screen showed the widget before. */
void show_renewed(Evas_Object* widget);

/** Nudges a widget: a key did nothing. */
void nudge(Evas_Object* widget);

/** Draws a frame with the widget's newest look before it returns. */
void draw_now(const Evas_Object* widget);

} // namespace vell
