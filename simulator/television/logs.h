/** The logs of the television's programs, /var/log/simulator/NAME.log. */
#pragma once

#include <string>
#include <vector>

namespace simulator {

std::string log_path(const std::string& name);

/** The last lines of a log, parted by " / "; "its log is empty" without any. */
std::string end_of_log(const std::string& name);

/** The names of the logs that are there, in alphabetical order. */
std::vector<std::string> log_names();

} // namespace simulator
