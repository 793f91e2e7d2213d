/** Whether Elementary's accessibility bridge has come to the bus. */
#pragma once

namespace platform {

/** Whether the bridge is on, and connected to the accessibility bus. */
bool bridge_is_connected();

} // namespace platform
