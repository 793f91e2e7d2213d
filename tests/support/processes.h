/** Processes of the television or, outside one, of the machine. */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace simulator {

/** The names of the running radio programs. */
std::vector<std::string> running_radio_programs();

/** The names of the zombies. */
std::vector<std::string> zombies();

/** The sum of the numbers after these names in a file with "Name: number" lines, such as those in /proc. */
long sum_of(const std::filesystem::path& path, const std::vector<std::string>& names);

} // namespace simulator
