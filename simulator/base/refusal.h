/** A call that the television refuses, with the name of the reason. */
#pragma once

#include <gio/gio.h>

#include <stdexcept>
#include <string>

namespace simulator {

/** On the bus the error is called "org.velmora.Simulator.Error." and this name. */
class Refusal : public std::runtime_error {
public:
    Refusal(const std::string& name, const std::string& message)
        : std::runtime_error(message), name_("org.velmora.Simulator.Error." + name) {}
    [[nodiscard]] const std::string& name() const { return name_; }

    /** Answers a call with this error. */
    void answer(GDBusMethodInvocation* invocation) const {
        g_dbus_method_invocation_return_dbus_error(invocation, name_.c_str(), what());
    }

private:
    std::string name_;
};

} // namespace simulator
