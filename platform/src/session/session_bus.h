/** The session bus, where there is one that answers. */
#pragma once

#include "application/object_pointer.h"

#include <chrono>
#include <gio/gio.h>
#include <string>

namespace platform {

/** The longest that a bus may hold up the application: for a connection, and for one answer after that. */
inline constexpr std::chrono::milliseconds bus_connection_limit{1000};
inline constexpr std::chrono::milliseconds bus_answer_limit{500};

/**
 * Connects to the bus at an address.
 *
 * @param reason receives why there is no connection.
 * @return a connection of its own; null when none comes about within `bus_connection_limit`.
 */
ObjectPointer<GDBusConnection> connect_in_time(const char* address, std::string& reason);

/**
 * Connects to the session bus.
 *
 * A bus is never started for the purpose: without DBUS_SESSION_BUS_ADDRESS and `$XDG_RUNTIME_DIR/bus` there
 * is none. A bus that goes away later does not end the process.
 *
 * @return a connection of its own; null when there is no bus (silently), or none that answers within
 *         `bus_connection_limit` (logged; nothing else in the process then waits for it either).
 */
ObjectPointer<GDBusConnection> connect_to_session_bus();

/** Logs why the session bus is not used, and lets everything else in the process find none: a library that
 * asked it, too, would wait for its answer. */
void give_up_session_bus(const char* reason);

} // namespace platform
