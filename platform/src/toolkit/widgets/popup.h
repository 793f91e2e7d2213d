/** Which widgets an open popup covers. */
#pragma once

#include <Elementary.h>

namespace vell {

/** Returns whether the widget is in the topmost popup or, if none is open, on the page: only such widgets can be used. */
bool is_in_front(const Evas_Object* widget);

/** Returns whether the widget is behind an open popup, which then gives it the focus when it closes. */
bool has_to_wait_for_popup(Evas_Object* widget);

} // namespace vell
