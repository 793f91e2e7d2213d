/** Presses that the framework keeps from the application, as the toolkit hears of them. */
#pragma once

#include <Ecore.h>

namespace platform {

/** The Ecore event, without data, that says once for a stretch that what was pressed in it reached nobody. */
inline int dropped_press_event() {
    static const int type = ecore_event_type_new();
    return type;
}

} // namespace platform
