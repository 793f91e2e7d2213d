/** Elementary's accessibility bridge, switched by the session. */
#pragma once

namespace platform {

/**
 * From now on switches Elementary's AT-SPI bridge on while the session reports a screen reader
 * (`ScreenReaderEnabled` of org.a11y.Status on the session bus), now and whenever that changes, and again until it
 * is on the accessibility bus. Returns at once; the main loop handles the replies, which may be late.
 *
 * Measured with EFL 1.26.3: the bridge does nothing while the session does not say so; switched on late, or off and
 * on again, it shows windows made before it as well. It waits for its buses without a limit, so it is switched on
 * only once both have accepted a connection of ours.
 */
void follow_screen_reader();

} // namespace platform
