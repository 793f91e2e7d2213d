/** What is written on the screen. */
#pragma once

#include "state.h"

#include <string>

namespace walk {

/** The name of what is there, as it is written on the screen. */
std::string name_of(const State& state, Spot spot);

/** Stands for how many packets there are, when there are some. */
inline const std::string some_packets = "N";

/**
 * One line of all that can be read, in reading order: [focused], and * behind what can take the focus.
 *
 * @param packets what the radio's service says of them when there are some.
 */
std::string appearance(const State& state, const std::string& packets = some_packets);

} // namespace walk
