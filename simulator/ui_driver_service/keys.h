/** The words in which callers name keys. */
#pragma once

#include <string>
#include <vector>

namespace simulator {

/** Writes keys out one by one: "Right*3" is Right, Right, Right. @throws Refusal for a bad number. */
std::vector<std::string> written_out(const std::vector<std::string>& keys);

} // namespace simulator
