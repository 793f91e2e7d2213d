#include "processes.h"

#include <algorithm>
#include <fstream>

namespace simulator {
namespace {

/** The names of all processes whose name and state letter satisfy a predicate. */
template <class Question>
std::vector<std::string> names_of(const Question& question) {
    std::vector<std::string> names;
    for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(folder.path() / "stat"); // "42 (name) S ..."
        std::string name;
        char state = '\0';
        if (std::getline(std::getline(file, name, '('), name, ')') >> state && question(name, state))
            names.push_back(name);
    }
    return names;
}

} // namespace

std::vector<std::string> running_processes(const std::vector<std::string>& names) {
    return names_of([&names](const std::string& name, char state) {
        return state != 'Z' && std::ranges::find(names, name) != names.end();
    });
}

std::vector<std::string> zombies() {
    return names_of([](const std::string& /*name*/, char state) { return state == 'Z'; });
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
