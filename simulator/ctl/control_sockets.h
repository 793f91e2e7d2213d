/** The televisions of this user that run. */
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace simulator {

/** Their names in alphabetical order. A folder that a dead one left is passed over. */
std::vector<std::string> running_televisions();

/**
 * Finds a television, and waits for one that is not there yet.
 *
 * @param name  of the television; empty: the only one that runs.
 * @param limit for it to appear.
 * @return its name.
 * @throws WrongUse when there is none, or more than one and none was named.
 */
std::string find_television(const std::string& name, std::chrono::milliseconds limit);

/** The address of its system bus. */
std::string bus_address_of(const std::string& name);

} // namespace simulator
