/** Focus changes: by arrow keys, and when a widget gives up the focus. */
#pragma once

#include <Elementary.h>

#include <string>

namespace vell {

/**
 * Corrects Elementary's focus handling in a window. Call once per window.
 *
 * - Left or Right with no widget beside the focused one does not move the focus. Elementary moves it to the
 *   nearest widget in that direction, which may be a tab in the header.
 * - When a widget gives up the focus (`elm_object_focus_set` with false), nothing is focused, and the next arrow key
 *   returns the focus to that widget. Elementary focuses a different widget, at once or when the window regains the
 *   keyboard; OK would then press that widget.
 * - A widget behind an open popup cannot take the focus, not even briefly, because a screen reader would announce it;
 *   such a widget gets the focus when the popup closes.
 * - A raised window gets the keyboard. Elementary leaves that to the window manager, but some window managers raise a
 *   window only if it also requests the keyboard, and others raise a window without giving it the keyboard.
 *
 * If nothing is focused, OK nudges the widget that gave up the focus. An arrow key that does not move the focus bumps
 * the focus ring.
 *
 * @param is_behind_popup returns whether a widget that is about to get the focus is behind an open popup.
 */
void correct_focus(Evas_Object* window, bool (*is_behind_popup)(Evas_Object* widget));

/** Nudges the widget that has or gave up the focus, to show that a key had no effect. */
void nudge_focus(Evas_Object* window);

/** Bumps a widget's focus ring in the direction of an arrow ("Left", "Right", "Up" or "Down") that had no effect. */
void bump_ring(Evas_Object* widget, const std::string& arrow);

/**
 * Clears the focus if it is in `parent`, whose content is about to be deleted. Otherwise Elementary would move the
 * focus to a widget that a screen reader would announce before the next page takes the focus.
 */
void drop_focus_in(const Evas_Object* parent);

/** Makes `tab` the widget that gets the focus whenever an arrow key moves the focus into the header. */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
