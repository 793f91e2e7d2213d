/** The NCP host service: the television's radio test methods on the system bus. */
#pragma once

#include "base/bus_object.h"
#include "base/log.h"
#include "behaviour.h"
#include "ncp_link.h"

#include <map>
#include <string>
#include <vector>

namespace simulator {

class NcpHost {
public:
    /** @param limit milliseconds the radio module has for an answer. @param log outlives the service. */
    NcpHost(GDBusConnection* connection, guint limit, const ComponentLog& log);

    /** From now on the method answers like that. @return false for an unknown method. */
    bool set_behaviour(const std::string& method, const Behaviour& behaviour);

private:
    /** One call that waits for its answer. */
    struct Call {
        std::string method;
        std::string text; /**< how it looks in the log, "ember_set_channel(15)" for example */
        GDBusMethodInvocation* invocation;
    };

    void handle_call(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
    void ask_module(const Call& call, std::optional<int> argument, int late_by);
    void reply(const Call& call, int code, const std::string& text) const;
    void reply_with(const Call& call, const std::string& value) const;
    void emit(GVariant* parameters) const;

    void handle_simulation_call(const std::string& method, GVariant* arguments,
                                GDBusMethodInvocation* invocation);
    void change_answer(GVariant* arguments);

    GDBusConnection* connection_;
    const ComponentLog& log_;
    std::map<std::string, Behaviour> behaviours_;
    std::vector<std::string> asked_;
    NcpLink link_;
    BusObject service_;
    BusObject simulation_;
};

} // namespace simulator
