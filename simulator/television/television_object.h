/** The television's object on its system bus: what drives it from outside. */
#pragma once

#include "base/bus.h"
#include "television.h"

#include <list>

namespace simulator {

/** Commands that callers from outside run in the television. */
class CommandRunner {
public:
    explicit CommandRunner(GDBusConnection* connection);
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    /**
     * Runs a command to its end and answers the call (of Run) with its status. When the caller leaves the bus before,
     * the command is killed.
     *
     * @throws Refusal when it cannot be started.
     */
    void run(const Call& call);

private:
    class Running;
    void remove(const Running& command);

    GDBusConnection* connection_;
    std::list<std::unique_ptr<Running>> running_;
};

class TelevisionObject {
public:
    /** @param television outlives the service. */
    explicit TelevisionObject(Television& television);
    ~TelevisionObject();
    TelevisionObject(const TelevisionObject&) = delete;
    TelevisionObject& operator=(const TelevisionObject&) = delete;

private:
    /** A floating aa{sv}. */
    [[nodiscard]] GVariant* components() const;
    void kill(const Call& call);
    void start_component(const Call& call);

    Television& television_;
    CommandRunner runner_;
    BusObject object_;
};

} // namespace simulator
