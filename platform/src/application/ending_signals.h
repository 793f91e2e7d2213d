/** Handling of SIGTERM, SIGINT, SIGQUIT and SIGHUP before, during and after the main loop. */
#pragma once

namespace platform {

/**
 * Initialises Ecore like `ecore_init`, but keeps the inherited dispositions of these signals.
 *
 * Observed with EFL 1.26.3: Ecore's handlers only queue an event for the loop, so signals would not stop a process that
 * is blocked before the loop, for example by an unresponsive system bus.
 */
bool init_ecore_without_signals();

/**
 * Makes these signals end the main loop, except those that the parent process ignored.
 *
 * Call it just before the loop. Ecore's handlers stay until Ecore shuts down, so signals after the loop have no effect.
 * This matters because a closing terminal sends two signals, and the second one must not interrupt the shutdown, which
 * takes a few seconds; otherwise the radio programs would keep running.
 *
 * Observed with EFL 1.26.3: Ecore turns each signal into an event for the loop; Elementary ends the loop for all but
 * SIGHUP. If the session bus closes while the accessibility bridge uses it, libeldbus sends the same event without a
 * signal number; the handler keeps that event from Elementary.
 */
void end_main_loop_on_signals();

} // namespace platform
