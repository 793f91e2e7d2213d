/** Everything that there is to know of a television, in one archive. */
#pragma once

#include "client/client.h"

#include <string>

namespace simulator {

/**
 * Writes a .tar.gz with one folder of the archive's name: a picture, the screen as text and JSON, the radio's
 * state, the calls to the NCP host, the components and all logs. What could not be had is told in "missing.txt".
 *
 * @throws Failure when the file cannot be written.
 */
void report(Client& client, const std::string& file);

} // namespace simulator
