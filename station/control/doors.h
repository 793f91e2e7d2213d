/** The televisions of this user that run. */
#pragma once

#include <string>
#include <vector>

namespace station {

/** Their names in alphabetical order. A folder that a dead one left is passed over. */
std::vector<std::string> running_televisions();

/**
 * The socket of a television's system bus.
 *
 * @param name of the television; empty: the only one that runs.
 * @throws WrongUse when there is none, or more than one and none was named.
 */
std::string find_door(const std::string& name);

} // namespace station
