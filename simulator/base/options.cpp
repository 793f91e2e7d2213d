#include "options.h"

#include <stdexcept>

namespace simulator {

Options::Options(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    auto word = words.begin();
    for (; word != words.end() && *word != "--"; ++word) {
        const auto middle = std::min(word->find('='), word->size());
        if (!word->starts_with("--"))
            throw std::runtime_error("not an option: " + *word);
        values_.emplace(word->substr(2, middle - 2), word->substr(std::min(middle + 1, word->size())));
    }
    if (word != words.end())
        command_.assign(word + 1, words.end());
}

std::vector<std::string> Options::all(const std::string& name) const {
    std::vector<std::string> values;
    for (auto [value, end] = values_.equal_range(name); value != end; ++value)
        values.push_back(value->second);
    return values;
}

std::string Options::text(const std::string& name) const {
    const auto found = values_.find(name);
    return found != values_.end() ? found->second : "";
}

double Options::number(const std::string& name, double otherwise) const {
    if (!has(name))
        return otherwise;
    try {
        return std::stod(text(name));
    } catch (const std::logic_error&) {
        throw std::runtime_error("--" + name + " " + text(name) + ": not a number");
    }
}

} // namespace simulator
