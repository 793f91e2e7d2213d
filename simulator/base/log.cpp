#include "log.h"

#include "strings.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>

namespace simulator {
namespace {

const std::filesystem::path log_folder = "/var/log/simulator";
constexpr std::size_t last_lines = 5;

} // namespace

std::string log_path(const std::string& name) { return log_folder / (name + ".log"); }

std::string end_of_log(const std::string& name) {
    std::vector<std::string> lines;
    std::ifstream file(log_path(name));
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(std::min(lines.size(), last_lines)));
    return lines.empty() ? "its log is empty" : joined(lines, " / ");
}

std::vector<std::string> log_names() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(log_folder))
        if (file.path().extension() == ".log")
            names.push_back(file.path().stem());
    std::ranges::sort(names);
    return names;
}

ComponentLog::ComponentLog(std::string name)
    : name_(std::move(name)),
      file_(open(log_path(name_).c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644)) {}

void ComponentLog::write_line(const std::string& message, bool is_error) const {
    constexpr double microseconds = 1e6;
    dprintf(file_.get(), "%.3f %s\n", static_cast<double>(g_get_monotonic_time()) / microseconds,
            message.c_str());
    if (is_error)
        dprintf(STDERR_FILENO, "%s: %s\n", name_.c_str(), message.c_str());
}

} // namespace simulator
