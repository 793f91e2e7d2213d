/** When a widget is barred from the focus. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Has `changed` called each time `elm_object_focus_allow_set` has said whether the widget may have the focus; Elementary
 * 1.26 tells nobody of it.
 */
void watch_focus_bar(Evas_Object* widget, void (*changed)(Evas_Object* widget));

} // namespace vell
