/** SIGTERM, SIGINT, SIGQUIT and SIGHUP: what they do before, in and after the main loop. */
#pragma once

namespace platform {

/**
 * Initialises Ecore as `ecore_init` does, and leaves the ending signals as the launcher set them.
 *
 * Measured with EFL 1.26.3: Ecore's handlers only queue an event for the loop, so a process that is blocked before the
 * loop, for example by a system bus that does not answer, could not be ended.
 */
bool init_ecore_without_signals();

/**
 * From now on the ending signals end the main loop, except those that the launcher had ignored.
 *
 * Called as the loop begins. Ecore's handlers stay until Ecore shuts down: after the loop a further signal does
 * nothing. A terminal that is closed sends two signals, and they must not interrupt the shutdown, which takes a few
 * seconds, or the radio's programs would keep running.
 *
 * Measured with EFL 1.26.3: Ecore turns each signal into an event for the loop; Elementary ends the loop for all but
 * SIGHUP. libeldbus sends the same event, without a signal number, when the session bus closes while the accessibility
 * bridge uses it: that event does not reach Elementary.
 */
void end_main_loop_on_signals();

} // namespace platform
