#include "logs.h"

#include "base/strings.h"

#include <algorithm>
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

} // namespace simulator
