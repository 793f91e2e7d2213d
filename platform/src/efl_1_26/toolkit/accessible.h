/** Accessibility information that Elementary lacks. */
#pragma once

#include <Elementary.h>

#include <efl_access_object.eo.h>

namespace vell {

/**
 * Sets the widget's accessible name (null removes it) and always emits name-changed, which Elementary 1.26 does only
 * for some widgets.
 */
void set_accessible_name(Evas_Object* widget, const char* name);

/** Marks `text` as the label of `widget` if the text's name ends in ": ". */
void label_accessible(Evas_Object* widget, Evas_Object* text);

/**
 * Corrects the accessibility of a button. Observed with Elementary 1.26: no button ever has the state BUSY or SELECTED,
 * and one that cannot take the focus (`elm_object_focus_allow_set`) is reported as enabled and offers its action. The
 * corrected button also emits "vell,focus,allowed" on each call to `elm_object_focus_allow_set`.
 */
void correct_button(Evas_Object* button);

/** Sets a state (BUSY or SELECTED) of a corrected button, and emits state-changed if the state changes. */
void set_accessible_state(Evas_Object* button, Efl_Access_State_Type state, bool holds);

} // namespace vell
