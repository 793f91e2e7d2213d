/** Focus movement on a page: by arrow keys, and when a widget gives the focus up. */
#pragma once

#include <Elementary.h>

#include <string>

namespace vell {

/**
 * Corrects where Elementary takes a window's focus, once for the window:
 *
 * - Left or Right with no widget beside the focused one does not move the focus. Elementary takes the nearest widget in that
 *   direction, which may be a tab in the header.
 * - When a widget gives the focus up (`elm_object_focus_set` with false), nothing has it, and the next key
 *   that moves the focus brings it back there. Elementary gives it to another widget, which OK would then
 *   press: at once, or when the window gets the keyboard back from another window.
 * - A widget behind an open popup cannot take the focus, not even briefly, or a screen reader would announce it; it gets the
 *   focus when the popup closes.
 * - A raised window gets the keyboard. Elementary leaves that to the window manager; some do not raise a window that does not
 *   request the keyboard too, and others do not give it the keyboard.
 *
 * OK while nothing has the focus nudges the widget that gave it up. An arrow key that does not move the focus bumps its ring.
 *
 * @param is_behind_popup returns whether the widget that is about to get the focus is behind an open popup.
 */
void correct_focus(Evas_Object* window, bool (*is_behind_popup)(Evas_Object* widget));

/** Nudges the widget that has the focus or gave it up, to show that a key had no effect. */
void nudge_focus(Evas_Object* window);

/** Bumps a widget's focus ring in the direction of an arrow ("Left", "Right", "Up" or "Down") that had no effect. */
void bump_ring(Evas_Object* widget, const std::string& arrow);

/**
 * Clears the focus if it is in `parent`, which is about to be deleted. Otherwise Elementary moves it to another widget, which
 * a screen reader would announce before the next page takes it.
 */
void drop_focus_in(const Evas_Object* parent);

/** Makes `tab` the widget that gets the focus whenever a key moves it up into the header. */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
