/** The command line of the simulator: "--NAME=VALUE" and "--NAME", then "--" and a command. */
#pragma once

#include <map>
#include <string>
#include <vector>

namespace simulator {

class Options {
public:
    /** @throws std::runtime_error for a word before the command that is no option. */
    Options(int argc, char** argv);

    [[nodiscard]] bool has(const std::string& name) const { return values_.contains(name); }
    /** The values of an option that may be given several times. */
    [[nodiscard]] std::vector<std::string> all(const std::string& name) const;
    /** The value of an option; empty when it is not given. */
    [[nodiscard]] std::string text(const std::string& name) const;
    /** @throws std::runtime_error when it is not a number. */
    [[nodiscard]] double number(const std::string& name, double otherwise) const;
    [[nodiscard]] const std::vector<std::string>& command() const { return command_; }

private:
    std::multimap<std::string, std::string> values_;
    std::vector<std::string> command_;
};

} // namespace simulator
