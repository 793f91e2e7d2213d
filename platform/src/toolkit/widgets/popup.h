/** Which widgets an open popup covers. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Returns whether the widget is usable: in the topmost popup or, if none is open, on the page. */
bool is_in_front(const Evas_Object* widget);

/** If the widget is behind an open popup, returns true and makes the popup give the focus to it on closing. */
bool has_to_wait_for_popup(Evas_Object* widget);

} // namespace vell
