/** Popups as the rest of the toolkit sees them. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Whether the widget is in the popup on top or, with none open, on the page: nothing else can be used. */
bool is_in_front(const Evas_Object* widget);

/** "focused" callback of every widget: focus that a widget behind an open popup took goes back into the
 * popup. */
void keep_focus_in_popup(void* data, Evas_Object* widget, void* event);

} // namespace vell
