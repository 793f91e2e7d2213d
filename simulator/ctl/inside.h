/** Commands that run inside the television, on the caller's own terminal and files. */
#pragma once

#include "client/client.h"

#include <string>
#include <vector>

namespace simulator {

/**
 * Runs a command with this process's standard descriptors, to its end; the command ends with this process.
 *
 * @return its status as a shell says it.
 * @throws Failure when it cannot be started.
 */
int run_inside(Client& client, const std::vector<std::string>& command);

/** The same with something else as its standard input, a folder outside for example. */
int run_inside(Client& client, const std::vector<std::string>& command, int input);

/** The same on a terminal of its own, which shows what this process's terminal does: an interactive shell has
 * its job control there, and the keys that interrupt a command reach that command. */
int run_on_terminal(Client& client, const std::vector<std::string>& command);

} // namespace simulator
