/** The television's object on its system bus: what drives it from outside. */
#pragma once

#include "base/bus.h"
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
    /** A floating aa{sv}. */
    [[nodiscard]] GVariant* components() const;
    void kill_program(const std::string& name);
    void start_component(const std::string& name);

    Television& television_;
    CommandRunner runner_;
    BusObject object_;
};

} // namespace simulator
