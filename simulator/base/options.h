/** The command line of the simulator: "--NAME=VALUE" and "--NAME", then "--" and a command. */
#pragma once

#include <algorithm>
#include <glib.h>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

class Options {
public:
    /** @throws std::runtime_error if a word before the command is not an option. */
    Options(int argc, char** argv) {
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

    [[nodiscard]] bool has(const std::string& name) const { return values_.contains(name); }
    /** The values of a repeatable option. */
    [[nodiscard]] std::vector<std::string> all(const std::string& name) const {
        std::vector<std::string> values;
        for (auto [value, end] = values_.equal_range(name); value != end; ++value)
            values.push_back(value->second);
        return values;
    }
    /** The value of an option; empty if it is not given. */
    [[nodiscard]] std::string text(const std::string& name) const {
        return has(name) ? all(name).front() : "";
    }
    /** @throws std::runtime_error if the value is not a number of 0 or more. */
    [[nodiscard]] double number(const std::string& name, double otherwise) const {
        const std::string value = text(name);
        char* end = nullptr;
        const double number = value.empty() ? otherwise : g_ascii_strtod(value.c_str(), &end);
        if ((end != nullptr && *end != '\0') || !(number >= 0))
            throw std::runtime_error("--" + name + " " + value + ": must be a number of 0 or more");
        return number;
    }
    [[nodiscard]] const std::vector<std::string>& command() const { return command_; }

private:
    std::multimap<std::string, std::string> values_;
    std::vector<std::string> command_;
};

} // namespace simulator
