/*
 * Measured with EFL 1.26.3: the bridge gives the accessibility service 100 ms for the bus's address, and does not ask
 * again; on a busy machine it stays on without a connection, and no event says so. It can be asked for that, but only
 * libelementary knows the bridge: no header declares the function that gives it away. Switched off, it is not cleared.
 */
#include "bridge_connection.h"

#include <Elementary.h>

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" Elm_Atspi_Bridge* _elm_atspi_bridge_get();

namespace platform {

bool bridge_is_connected() {
    return elm_config_atspi_mode_get() && elm_atspi_bridge_connected_get(_elm_atspi_bridge_get());
}

} // namespace platform
