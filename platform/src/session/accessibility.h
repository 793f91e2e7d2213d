/** Switches Elementary's accessibility bridge on and off with the session's screen reader. */
#pragma once

namespace platform {

/**
 * Keeps Elementary's AT-SPI bridge on while the session reports a screen reader (`ScreenReaderEnabled` of
 * org.a11y.Status on the session bus), and retries until the bridge is connected to the accessibility bus.
 * Returns at once; the main loop handles the replies.
 *
 * Observed with EFL 1.26.3: the bridge is inactive unless the session reports a screen reader; if switched on later or
 * again, it also exposes existing windows. It waits for its buses without a time-out, so it is switched on only after
 * both have accepted a connection from this process.
 */
void follow_screen_reader();

} // namespace platform
