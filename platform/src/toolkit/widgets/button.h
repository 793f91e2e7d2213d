/** Buttons as the rest of the toolkit sees them. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Marks a button as the chosen one of its row, or no longer. */
void mark_chosen(Evas_Object* button, bool chosen);

} // namespace vell
