/** Checks for a session bus. */
#pragma once

namespace platform {

/**
 * Returns whether DBUS_SESSION_BUS_ADDRESS or `$XDG_RUNTIME_DIR/bus` names a session bus, even an unresponsive one.
 *
 * Check before using GIO, which otherwise starts a bus that no other program uses.
 */
bool has_session_bus();

} // namespace platform
