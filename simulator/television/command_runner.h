/** Commands that callers from outside run in the television. */
#pragma once

#include "base/bus.h"

#include <list>

namespace simulator {

class CommandRunner {
public:
    explicit CommandRunner(GDBusConnection* connection);
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    /**
     * Runs a command to its end and answers the call (of Run) with its status. If the caller leaves the bus before, the
     * command is killed.
     *
     * @throws Refusal if it cannot be started.
     */
    void run(const Call& call);

private:
    struct Running;

    GDBusConnection* connection_;
    std::list<Running> running_;
};

} // namespace simulator
