/** The one main loop, and why it ends. */
#pragma once

namespace platform {

/** Runs the main loop until it is asked to end, and logs why: the first reason, if several. */
void run_main_loop();

/** Asks the main loop to end, or not to start (Ecore forgets a request that comes before it runs). */
void quit_main_loop(const char* reason);

} // namespace platform
