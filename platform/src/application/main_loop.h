/** The one main loop, and why it ends. */
#pragma once

namespace platform {

/** Runs until it is asked to end, and logs why it ends: the reason given first. */
void run_main_loop();

/** Asks the main loop to end; before it runs, not to begin: Ecore forgets such a request. */
void quit_main_loop(const char* reason);

} // namespace platform
