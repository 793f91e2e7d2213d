/** What Ecore X does not ask the X server. */
#pragma once

#include <optional>

namespace platform {

/** The server's own time in milliseconds, which keys and buttons carry too; nothing without a display. */
std::optional<unsigned> x_server_time();

} // namespace platform
