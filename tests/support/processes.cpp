#include "processes.h"

#include <algorithm>
#include <fstream>
#include <regex>

namespace simulator {
namespace {

/** Searches every /proc/PID/stat ("42 (name) S ..."); returns the pattern's first group, the name, for each match. */
std::vector<std::string> names_in_stat(const char* pattern) {
    const std::regex wanted(pattern);
    std::vector<std::string> names;
    for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(folder.path() / "stat");
        std::string line;
        std::smatch match;
        if (std::getline(file, line) && std::regex_search(line, match, wanted))
            names.push_back(match[1]);
    }
    return names;
}

} // namespace

std::vector<std::string> running_radio_programs() {
    return names_in_stat(R"(\((cpcd|socat|zigbeed)\) [^Z])");
}

std::vector<std::string> zombies() { return names_in_stat(R"(\((.*)\) Z)"); }

long sum_of(const std::filesystem::path& path, const std::vector<std::string>& names) {
    std::ifstream file(path);
    long sum = 0;
    std::string word;
    while (file >> word)
        if (long number = 0; std::ranges::find(names, word) != names.end() && file >> number)
            sum += number;
    return sum;
}

} // namespace simulator
