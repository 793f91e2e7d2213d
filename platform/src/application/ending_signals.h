/** SIGTERM, SIGINT, SIGQUIT and SIGHUP: what they do before, in and after the main loop. */
#pragma once

namespace platform {

/**
 * Initialises Ecore as `ecore_init` does, and leaves the ending signals as the launcher set them.
 *
 * Measured with EFL 1.26.3: Ecore's handlers only queue an event for the loop, so that a process which is held up
 * before it, as by a system bus that does not answer, could not be ended.
 */
bool init_ecore_without_signals();

/**
 * From now on the ending signals end the main loop, except those that the launcher had ignored.
 *
 * Called as the loop begins, and Ecore's handlers stay until Ecore goes: after the loop a further signal does
 * nothing. A terminal that is closed sends two of them, and the end, which takes a few seconds, must not be
 * broken off half-way, with the radio's programs left running.
 *
 * Measured with EFL 1.26.3: Ecore turns each of them into an event that comes once control is back in the
 * loop; Elementary ends the loop for all but SIGHUP. libeldbus sends the same event, without a signal in it,
 * when the session bus goes while the accessibility bridge uses it: that one is kept from Elementary.
 */
void end_main_loop_on_signals();

} // namespace platform
