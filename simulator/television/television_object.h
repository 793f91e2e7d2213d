/** The television's object on its system bus: what drives it from outside. See contract.h. */
#pragma once

#include "base/bus_object.h"
#include "command_runner.h"
#include "television.h"

namespace simulator {

class TelevisionObject {
public:
    /** @param television outlives the service. */
    TelevisionObject(GDBusConnection* connection, Television& television);
    ~TelevisionObject();
    TelevisionObject(const TelevisionObject&) = delete;
    TelevisionObject& operator=(const TelevisionObject&) = delete;

private:
    void handle_call(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
    [[nodiscard]] GVariant* components() const;
    void kill_program(const std::string& name);
    void start_component(const std::string& name);
    void run_command(GVariant* arguments, GDBusMethodInvocation* invocation);

    GDBusConnection* connection_;
    Television& television_;
    CommandRunner runner_;
    BusObject object_;
};

} // namespace simulator
