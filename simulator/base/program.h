/** The frame of a simulator program: its log, options, readiness, orderly end. */
#pragma once

#include "log.h"

#include <glib.h>

#include <functional>

namespace simulator {

/**
 * The main of a simulator program, which writes an exception of `run` on its log.
 *
 * @return the program's exit status.
 */
int run_program(const char* name, const std::function<void(const ComponentLog& log)>& run);

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

} // namespace simulator
