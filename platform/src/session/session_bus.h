/** Whether there is a session bus. */
#pragma once

namespace platform {

/**
 * Whether DBUS_SESSION_BUS_ADDRESS or `$XDG_RUNTIME_DIR/bus` names a session bus; it may not answer.
 *
 * Where there is none, GIO would start one, which no other program would use.
 */
bool has_session_bus();

} // namespace platform
