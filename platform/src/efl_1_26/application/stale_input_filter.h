/** Drops input that was meant for an earlier state of the screen. */
#pragma once

namespace platform {

/**
 * Drops key, mouse button and wheel events that occurred before the end of a freeze: the operator reacted to the frozen
 * screen, not to the current one. In a freeze, the main loop is blocked for more than 250 ms.
 *
 * Still delivers the red key, which only raises the window, and all releases.
 *
 * Waiting for events does not count as blocked; the time from this call to the first wait does.
 */
void drop_stale_input();

} // namespace platform
