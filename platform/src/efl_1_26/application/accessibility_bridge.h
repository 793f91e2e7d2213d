/** Checks Elementary's accessibility bridge, and restores key presses while it is on. */
#pragma once

namespace platform {

/** Whether the bridge is on, and connected to the accessibility bus. */
bool bridge_is_connected();

} // namespace platform
