/** What a screen reader is told of a widget that Elementary itself does not describe. */
#pragma once

#include <Elementary.h>

namespace vell {

enum class Role { label, heading, dialog, spin_button };

/** Gives the widget a role. */
void set_accessible_role(Evas_Object* widget, Role role);

/** Gives the widget a name; null removes it. */
void set_accessible_name(Evas_Object* widget, const char* name);

/** Gives the widget a text that is read after its name; null removes it. */
void set_accessible_description(Evas_Object* widget, const char* description);

} // namespace vell
