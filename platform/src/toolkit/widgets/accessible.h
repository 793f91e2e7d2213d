/** What a screen reader is told of a widget that Elementary itself does not describe. */
#pragma once

#include <Elementary.h>

namespace vell {

enum class Role { label, heading };

/** Gives the widget a role. */
void set_accessible_role(Evas_Object* widget, Role role);

/** Gives the widget a name and says so, also when it had that name; null removes it. */
void set_accessible_name(Evas_Object* widget, const char* name);

/** Gives the widget a text that is read after its name; null removes it. */
void set_accessible_description(Evas_Object* widget, const char* description);

/** Has `text`, if its name ends in ": ", label the widget that follows it. */
void label_accessible(Evas_Object* widget, Evas_Object* text);

} // namespace vell
