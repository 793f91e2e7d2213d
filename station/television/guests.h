/** Commands that callers from outside run in the television. */
#pragma once

#include "common/process.h"

#include <gio/gio.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace station {

class Guests {
public:
    explicit Guests(GDBusConnection* connection);
    ~Guests();
    Guests(const Guests&) = delete;
    Guests& operator=(const Guests&) = delete;

    /**
     * Runs a command to its end and answers the call with its status. When the caller leaves the bus before,
     * the command is killed.
     *
     * @throws std::runtime_error when it cannot be started; the call is then unanswered.
     */
    void run(const std::vector<std::string>& command, const std::vector<std::string>& environment,
             Descriptors descriptors, GDBusMethodInvocation* invocation);

private:
    class Guest;
    void remove(const Guest& guest);

    GDBusConnection* connection_;
    std::list<std::unique_ptr<Guest>> guests_;
};

} // namespace station
