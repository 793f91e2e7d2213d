/** The main loop and its shutdown reason. */
#pragma once

namespace platform {

/** Runs the main loop until `quit_main_loop`, and logs the reason (the first one, if several). */
void run_main_loop();

/** Ends the main loop. If it has not started yet, `run_main_loop` returns at once; Ecore alone would still run it. */
void quit_main_loop(const char* reason);

} // namespace platform
