/** Elementary's accessibility bridge, switched by the session. */
#pragma once

namespace platform {

/**
 * From now on switches Elementary's AT-SPI bridge on while the session says that a screen reader is there
 * (`ScreenReaderEnabled` of org.a11y.Status on the session bus), now and whenever that changes, and again until it
 * is on the accessibility bus. Returns at once; the session is asked while the main loop runs, and may answer late.
 *
 * Measured with EFL 1.26.3: the bridge does nothing while the session does not say so; switched on late, or off and
 * on again, it shows windows made before it as well. It waits without a limit for its buses, so it is switched on
 * only when both have let in a connection of ours.
 */
void follow_screen_reader();

} // namespace platform
