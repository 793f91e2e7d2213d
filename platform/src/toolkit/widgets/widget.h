/** The types of the toolkit's widgets. */
#pragma once

#include <Elementary.h>

#include <string>

namespace vell {

enum class Family { background, layout, header, textbox, button, spinner, message, popup };

/** Registers `object` as a widget of the toolkit unless it is null. Returns `object`. */
Evas_Object* adopt(Evas_Object* object, Family family);

/** Returns whether `object` is a widget of this family; false for null. */
bool is_a(Family family, const Evas_Object* object);

/** Escapes text as Elementary markup, so that it is shown literally; null counts as empty. */
std::string markup(const char* text);

} // namespace vell
