/** The frame of a station program with a main loop: options, readiness, orderly end. */
#pragma once

#include <glib.h>

#include <string>

namespace station {

/**
 * Reads the command line.
 *
 * @param options   the program's options, ended by an entry of zeroes.
 * @param summary   one line of help.
 * @throws std::runtime_error for a wrong option, or an argument that is none.
 */
void read_options(int argc, char** argv, const GOptionEntry* options, const char* summary);

/** Says on standard output that the program is ready, then runs the main loop until SIGTERM or SIGINT. */
void run_until_terminated();

} // namespace station
