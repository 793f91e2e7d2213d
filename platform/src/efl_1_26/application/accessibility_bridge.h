/** Checks Elementary's accessibility bridge, and keeps the bridge from consuming key presses. */
#pragma once

namespace platform {

/** Whether the bridge is on, and connected to the accessibility bus. */
bool bridge_is_connected();

} // namespace platform
