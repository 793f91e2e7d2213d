/** Drops input that was meant for an earlier state of the screen. */
#pragma once

namespace platform {

/**
 * Drops keys, mouse buttons and wheel events from before the end of a freeze, in which the main loop was blocked for
 * more than 250 ms: the operator reacted to the screen of the freeze, not to the current one.
 *
 * Delivers the red key, which only raises the window, and all releases.
 *
 * Waiting for events does not count as blocked; the time from this call to the first wait does.
 */
void drop_stale_input();

} // namespace platform
