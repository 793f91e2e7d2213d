/** What Ecore X does not ask the X server. */
#pragma once

#include <bitset>
#include <optional>

namespace platform {

/** The server's own time in milliseconds, which keys and buttons carry too; nothing without a display. */
std::optional<unsigned> x_server_time();

/** By key code, whether a key is down now; none without a display. */
std::bitset<256> x_keys_down();

} // namespace platform
