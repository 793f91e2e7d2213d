/** The display server's end while the application runs. */
#pragma once

namespace platform {

/**
 * From now on the display server's end ends the main loop, as a signal does, and terminate follows; Ecore would
 * end the process at once. For the display that Ecore X is connected to; nothing without one.
 */
void survive_display_loss();

} // namespace platform
