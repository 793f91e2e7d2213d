/** The event that tells the toolkit that the framework dropped a press. */
#pragma once

#include <Ecore.h>

namespace platform {

/** Returns the type of an Ecore event without data, sent once per freeze in which presses were dropped. */
inline int dropped_press_event() {
    static const int type = ecore_event_type_new();
    return type;
}

} // namespace platform
