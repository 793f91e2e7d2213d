/** Accessibility information that Elementary does not give by itself. */
#pragma once

#include <Elementary.h>

#include <efl_access_object.eo.h>

namespace vell {

/**
 * Sets the widget's accessible name (null removes it) and emits name-changed, even for an equal name: Elementary 1.26 does
 * so for some widgets only.
 */
void set_accessible_name(Evas_Object* widget, const char* name);

/** Relates `text` as the label of `widget` if its name ends in ": ". */
void label_accessible(Evas_Object* widget, Evas_Object* text);

/**
 * Corrects what Elementary 1.26 was measured to report for a button: it is never busy nor selected, and it is enabled and
 * offers its action even if it may not have the focus (`elm_object_focus_allow_set`). Elementary also emits nothing when that
 * is set; the button now emits "vell,focus,allowed" each time.
 */
void correct_button(Evas_Object* button);

/** Sets a state (BUSY or SELECTED) of a corrected button, and emits state-changed if it differs from before. */
void set_accessible_state(Evas_Object* button, Efl_Access_State_Type state, bool holds);

} // namespace vell
