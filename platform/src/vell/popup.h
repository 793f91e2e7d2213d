/** Popups as the rest of the toolkit sees them. */
#pragma once

#include <Elementary.h>

namespace vell {

/** "focused" callback of every widget: focus that a widget behind an open popup took goes back into the
 * popup. */
void keep_focus_in_popup(void* data, Evas_Object* widget, void* event);

} // namespace vell
