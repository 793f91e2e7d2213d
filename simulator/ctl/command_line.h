/** The verbs of tvctl and their words. */
#pragma once

#include "client/client.h"
#include "verbs.h"

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace simulator {

class CommandLine {
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();
    /** @return the exit status. @throws Failure or WrongUse. */
    int run(int argc, char** argv);

private:
    using Action = std::function<void(Client& client)>;

    CLI::App* add_verb(const std::string& name, const std::string& help, const Action& action);
    /** A verb with words that have to be there. */
    CLI::App* add_verb(const std::string& name, const std::vector<std::string>& words,
                       const std::string& help, const Action& action);
    void add_screen_verbs();
    void add_waiting();
    void add_radio_verbs();
    void add_stack_verbs();
    void add_inside_verbs();
    void wait(Client& client);

    std::unique_ptr<CLI::App> app_;
    std::string name_;
    Output output_;
    Action action_;
    bool is_list_ = false;
    std::chrono::milliseconds patience_{0}; // for a television that is not there yet

    std::array<std::string, 2> words_;
    std::vector<std::string> keys_;
    double seconds_ = 10;
    bool gone_ = false;
    bool focus_ = false;
    bool number_ = false;
    bool follow_ = false;
    int status_ = 0;
};

} // namespace simulator
