/** The televisions of this user that run. */
#pragma once

#include "base/gobject_release.h"

#include <chrono>
#include <string>
#include <vector>

namespace simulator {

/** Their names in alphabetical order. A folder that a dead one left is passed over. */
std::vector<std::string> running_televisions();

/**
 * Connects to a television's system bus.
 *
 * @param name     of the television; empty: the only one that runs.
 * @param patience how long to wait for it to appear.
 * @throws WrongUse when there is none, or more than one and none was named; std::runtime_error.
 */
BusConnection open_control_socket(const std::string& name, std::chrono::milliseconds patience);

} // namespace simulator
