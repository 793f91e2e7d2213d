/** Runs GLib's default main context inside Ecore's main loop. */
#pragma once

namespace platform {

/**
 * Makes Ecore's main loop also wait for GLib's default context and dispatch it.
 *
 * Debian's EFL is built without GLib support (`ecore_main_loop_glib_integrate` returns false), so Ecore gets a select
 * function that waits for the descriptors and time-outs of both, without polling. D-Bus messages get a limited share of
 * each iteration of the loop, so a flood of them does not block keys.
 */
void dispatch_glib_in_ecore();

} // namespace platform
