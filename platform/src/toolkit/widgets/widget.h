/** What the toolkit knows of each of its widgets. */
#pragma once

#include <Elementary.h>

#include <string>

namespace vell {

enum class Family { background, layout, header, textbox, button, spinner, message, popup };

/** Makes `object` a widget of the toolkit; null stays null. Returns `object`. */
Evas_Object* adopt(Evas_Object* object, Family family);

/** Whether `object` is a widget of this family; null is of none. */
bool is_a(Family family, const Evas_Object* object);

/** Text as Elementary's markup, in which it is shown as it stands; null counts as empty. */
std::string markup(const char* text);

} // namespace vell
