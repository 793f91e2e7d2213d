/** The session bus, where there is one. */
#pragma once

#include "object_pointer.h"

#include <chrono>
#include <gio/gio.h>

namespace platform {

/** The longest that anything on the session bus may hold up the start of the application. */
inline constexpr std::chrono::milliseconds session_bus_limit{1500};

/**
 * Connects to the session bus.
 *
 * A bus is never started for the purpose: without DBUS_SESSION_BUS_ADDRESS and `$XDG_RUNTIME_DIR/bus` there
 * is none. A bus that goes away later does not end the process.
 *
 * @return the process's shared connection; null when there is no bus (silently), or none that answers within
 *         `session_bus_limit` (logged).
 */
ObjectPointer<GDBusConnection> connect_to_session_bus();

} // namespace platform
