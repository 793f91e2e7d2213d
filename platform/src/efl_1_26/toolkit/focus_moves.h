/** Where the focus goes on a page, by the arrow keys and when a widget gives it up. */
#pragma once

#include <Elementary.h>

#include <string>

namespace vell {

/**
 * Corrects where Elementary takes a window's focus, once for the window:
 *
 * - A key to the side with nothing beside the focus leaves it where it is. Elementary takes the nearest of
 *   all widgets that way, which for one in the page's middle may well be another page's tab.
 * - When a widget gives the focus up (`elm_object_focus_set` with false), nothing has it, and the next key
 *   that moves the focus brings it back there. Elementary gives it to another widget, which OK would then
 *   press: at once, or when the window gets the keyboard back from another window.
 * - What is behind an open popup cannot take the focus, not even for a moment in which a screen reader would say so; it
 *   has it when the popup closes.
 * - A window that is raised gets the keyboard. Elementary leaves that to the window manager, and some raise
 *   no window that does not ask for the keyboard too, and others give none.
 *
 * OK while nothing has the focus nudges the widget that gave it up, and an arrow that leads nowhere bumps the focus ring.
 *
 * @param is_behind_popup whether a widget that is to have the focus is behind an open popup, which then notes it.
 */
void correct_focus(Evas_Object* window, bool (*is_behind_popup)(Evas_Object* widget));

/** Nudges what has the focus, or gave it up: a key did nothing. */
void nudge_focus(Evas_Object* window);

/** Has a widget's focus ring bump, for an arrow leads nowhere: "Left", "Right", "Up" or "Down". */
void bump_ring(Evas_Object* widget, const std::string& arrow);

/**
 * Has nothing focused if something in `parent`, which is about to go, is. Elementary gives the focus to another widget
 * then, which a screen reader would say, and the next page takes it from there.
 */
void drop_focus_in(const Evas_Object* parent);

/** Has the focus go to `tab` whenever a key moves it up into the header. */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
