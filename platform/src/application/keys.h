/** Remote-control keys on a keyboard. */
#pragma once

namespace platform {

/**
 * Renames Escape, F12 and F1 to "XF86Back", "XF86Exit" and "XF86Red" for all key handlers, including Evas's. Real keys
 * with these names still work. Handlers that are prepended later see the original names.
 */
void add_remote_control_keys();

} // namespace platform
