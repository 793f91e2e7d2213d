/** Commands that callers from outside run in the television. */
#pragma once

#include "base/process.h"

#include <gio/gio.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace simulator {

class CommandRunner {
public:
    explicit CommandRunner(GDBusConnection* connection);
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    /**
     * Runs a command to its end and answers the call with its status. When the caller leaves the bus before,
     * the command is killed.
     *
     * @throws std::runtime_error when it cannot be started; the call is then unanswered.
     */
    void run(const std::vector<std::string>& command, const std::vector<std::string>& environment,
             Descriptors descriptors, GDBusMethodInvocation* invocation);

private:
    class Running;
    void remove(const Running& command);

    GDBusConnection* connection_;
    std::list<std::unique_ptr<Running>> running_;
};

} // namespace simulator
