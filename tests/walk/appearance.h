/** What is written on the screen. */
#pragma once

#include "state.h"

#include <string>

namespace walk {

/** The name of what is there, as it is written on the screen. */
std::string name_of(const State& state, Spot spot);

/** One line of all that can be read, in reading order: [focused], and * behind what can take the focus. */
std::string appearance(const State& state);

} // namespace walk
