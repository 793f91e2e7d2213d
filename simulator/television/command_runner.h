/** Commands that callers from outside run in the television. */
#pragma once

#include "base/bus.h"
#include "base/process.h"

#include <list>
#include <memory>

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
     * @param call of the method Run.
     * @throws Refusal when it cannot be started.
     */
    void run(const Call& call);

private:
    class Running;
    void remove(const Running& command);

    GDBusConnection* connection_;
    std::list<std::unique_ptr<Running>> running_;
};

} // namespace simulator
