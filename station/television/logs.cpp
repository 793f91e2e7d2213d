#include "logs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace station {
namespace {

const std::filesystem::path folder = "/var/log/station";
constexpr std::size_t last_lines = 5;

} // namespace

std::string log_path(const std::string& name) { return folder / (name + ".log"); }

std::string end_of_log(const std::string& name) {
    std::vector<std::string> lines;
    std::ifstream file(log_path(name));
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    std::string text;
    for (std::size_t i = lines.size() - std::min(lines.size(), last_lines); i < lines.size(); ++i)
        text += (text.empty() ? "" : " / ") + lines[i];
    return text.empty() ? "its log is empty" : text;
}

std::vector<std::string> log_names() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder))
        if (file.path().extension() == ".log")
            names.push_back(file.path().stem());
    std::ranges::sort(names);
    return names;
}

} // namespace station
