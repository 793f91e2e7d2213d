/** The command line of a program. */
#pragma once

#include <glib.h>

namespace simulator {

/**
 * Reads the command line.
 *
 * @param options the program's options, ended by an entry of zeroes.
 * @param summary one line of help.
 * @throws std::runtime_error for a wrong option, or an argument that is none.
 */
void read_options(int argc, char** argv, const GOptionEntry* options, const char* summary);

} // namespace simulator
