/** What the simulated NCP host remembers. */
#pragma once

#include <string>
#include <vector>

namespace station {

/**
 * Every call the NCP host was asked since it started, in order, for example "ember_set_channel(15)".
 *
 * @throws std::runtime_error when it does not answer.
 */
std::vector<std::string> asked_of_ncp_host();

} // namespace station
