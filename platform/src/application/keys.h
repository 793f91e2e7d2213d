/** Remote-control keys on a keyboard. */
#pragma once

namespace platform {

/**
 * From now on Escape, F12 and F1 reach every key handler, Evas's included, as "XF86Back", "XF86Exit" and "XF86Red".
 * The real keys of these names still work. Handlers that are prepended later see the keyboard's names.
 */
void add_remote_control_keys();

} // namespace platform
