/** The main loop and its shutdown reason. */
#pragma once

namespace platform {

/** Runs the main loop until `quit_main_loop`, and logs the reason (the first one, if several). */
void run_main_loop();

/** Ends the main loop, or prevents its start (Ecore loses a request made before the loop runs). */
void quit_main_loop(const char* reason);

} // namespace platform
