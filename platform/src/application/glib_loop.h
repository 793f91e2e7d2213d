/** GLib's default main context inside Ecore's main loop. */
#pragma once

namespace platform {

/**
 * Has Ecore's main loop wait for GLib's default context too, and dispatch it, from now on.
 *
 * Debian's EFL is built without GLib support (`ecore_main_loop_glib_integrate` answers false), so Ecore is
 * given a select function that waits for the descriptors and time-outs of both. Nothing is woken at intervals:
 * the wait ends when a descriptor of either is ready or the nearest time-out of either is over. A flood of D-Bus
 * messages gets a share of each turn of the loop, so that keys get theirs.
 */
void dispatch_glib_in_ecore();

} // namespace platform
