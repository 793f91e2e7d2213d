#include "log.h"

#include "strings.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <ctime>

namespace simulator {
namespace {

const std::filesystem::path log_folder = "/var/log/simulator";
constexpr std::size_t last_lines = 5;

std::string time_stamp() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%lld.%03ld ", static_cast<long long>(now.tv_sec),
                  now.tv_nsec / 1000000);
    return text.data();
}

/** Whether standard error already goes into this file. */
bool is_standard_error(int file) {
    struct stat first {};
    struct stat second {};
    return fstat(file, &first) == 0 && fstat(STDERR_FILENO, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

void put(int file, const std::string& line) {
    // A log that cannot be written has nobody to tell.
    [[maybe_unused]] const auto written = write(file, line.data(), line.size());
}

} // namespace

ComponentLog::ComponentLog(std::string name)
    : name_(std::move(name)),
      file_(open(log_path(name_).c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644)) {}

void ComponentLog::write_line(std::string_view message, bool is_error) const {
    if (file_)
        put(file_.get(), time_stamp().append(message) + "\n");
    if (!file_ || (is_error && !is_standard_error(file_.get())))
        put(STDERR_FILENO, name_ + ": " + std::string(message) + "\n");
}

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

} // namespace simulator
