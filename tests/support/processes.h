/** Processes of the television or, outside one, of the machine. */
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace simulator {

/** The names of the running processes among `names`, without zombies. */
std::vector<std::string> running_processes(const std::vector<std::string>& names);

/** The names of the zombies. */
std::vector<std::string> zombies();

/** The sum of the numbers after these names in a file with "Name: number" lines, such as those in /proc. */
long sum_of(const std::filesystem::path& path, std::initializer_list<std::string_view> names);

} // namespace simulator
