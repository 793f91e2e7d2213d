/** GLib's default main context inside Ecore's main loop. */
#pragma once

namespace platform {

/**
 * Has Ecore's main loop wait for GLib's default context too, and dispatch it, from now on.
 *
 * Debian's EFL is built without GLib support (`ecore_main_loop_glib_integrate` answers false), so Ecore is
 * given a select function that waits for the descriptors and time-outs of both. There is no polling: the wait ends when
 * a descriptor of either is ready or the nearest time-out of either is over. D-Bus messages get a limited share of each
 * iteration of the loop, so a flood of them does not block keys.
 */
void dispatch_glib_in_ecore();

} // namespace platform
