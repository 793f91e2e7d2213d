/** The processes of the television, or of the machine outside of one. */
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace simulator {

/** The names of the running processes that are among `names`; ended children nobody has collected
 * are left out. */
std::vector<std::string> running_processes(const std::vector<std::string>& names);

/** The names of the ended processes that nobody has collected. */
std::vector<std::string> zombies();

/** The sum of the numbers that follow one of the names in a file of "Name: number" lines, as /proc has many. */
long sum_of(const std::filesystem::path& path, std::initializer_list<std::string_view> names);

} // namespace simulator
