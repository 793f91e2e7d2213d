/** What assistive technology is told of a widget beyond what Elementary says itself. */
#pragma once

#include <Elementary.h>

#include <efl_access_object.eo.h>

namespace vell {

/**
 * Gives the widget a name and says so, also when it had that name: Elementary 1.26 does for some widgets and not for
 * others. Null removes it.
 */
void set_accessible_name(Evas_Object* widget, const char* name);

/** Has `text`, if its name ends in ": ", label the widget that follows it. */
void label_accessible(Evas_Object* widget, Evas_Object* text);

/**
 * Corrects what Elementary 1.26 was measured to say of a button: it is never busy nor selected, and when it may not have
 * the focus (`elm_object_focus_allow_set`), it is enabled and offers its action all the same. It also tells nobody whether
 * the button may have the focus: each time that is set, the smart callbacks of "vell,focus,allowed" are called now.
 */
void correct_button(Evas_Object* button);

/** Says that a state, one of BUSY and SELECTED, of a corrected button holds or no longer does; nothing when it is as it was. */
void set_accessible_state(Evas_Object* button, Efl_Access_State_Type state, bool holds);

} // namespace vell
