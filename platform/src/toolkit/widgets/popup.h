/** Popups as the rest of the toolkit sees them. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Whether the widget is in the popup on top or, with none open, on the page: nothing else can be used. */
bool is_in_front(const Evas_Object* widget);

/** Whether the widget is behind an open popup; the focus, which it was to get, comes to it when that closes. */
bool has_to_wait_for_popup(Evas_Object* widget);

} // namespace vell
