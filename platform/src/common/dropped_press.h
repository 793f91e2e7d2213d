/** The event by which the toolkit learns that the framework dropped a press. */
#pragma once

#include <Ecore.h>

namespace platform {

/** Returns the type of the Ecore event, without data, that is sent once for a freeze in which presses were dropped. */
inline int dropped_press_event() {
    static const int type = ecore_event_type_new();
    return type;
}

} // namespace platform
