#include "processes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace simulator {
namespace {

/** Number, name and state letter from /proc/ID/stat: "42 (name) S ..." */
struct ProcessEntry {
    std::filesystem::path folder;
    std::string name;
    char state = '\0';
};

ProcessEntry read_entry(const std::filesystem::path& folder) {
    std::ifstream file(folder / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(") ");
    if (open == std::string::npos || close == std::string::npos || close + 2 >= line.size())
        return {};
    return {folder, line.substr(open + 1, close - open - 1), line[close + 2]};
}

std::vector<ProcessEntry> all_processes() {
    std::vector<ProcessEntry> entries;
    for (const auto& folder : std::filesystem::directory_iterator("/proc"))
        if (ProcessEntry entry = read_entry(folder.path()); !entry.name.empty())
            entries.push_back(std::move(entry));
    return entries;
}

} // namespace

std::vector<std::string> running_processes(const std::vector<std::string>& names) {
    std::vector<std::string> running;
    for (const ProcessEntry& entry : all_processes())
        if (entry.state != 'Z' && std::ranges::find(names, entry.name) != names.end())
            running.push_back(entry.name);
    return running;
}

std::vector<std::string> zombies() {
    std::vector<std::string> names;
    for (const ProcessEntry& entry : all_processes())
        if (entry.state == 'Z')
            names.push_back(entry.name);
    return names;
}

long sum_of(const std::filesystem::path& path, std::initializer_list<std::string_view> names) {
    std::ifstream file(path);
    long sum = 0;
    std::string word;
    while (file >> word)
        for (const std::string_view name : names)
            if (long number = 0; word == name && file >> number)
                sum += number;
    return sum;
}

} // namespace simulator
