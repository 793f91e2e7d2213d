/** Keeps key presses alive while Elementary's accessibility bridge is on. */
#pragma once

namespace platform {

/**
 * Makes sure that this process's `ecore_event_filter_add` is the one that refuses the bridge's key filter
 * (see the source file). Nothing happens at run time: the call makes the linker take the definition out of
 * the library.
 */
void keep_out_bridge_key_filter();

} // namespace platform
