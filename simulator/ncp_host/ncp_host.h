/** The NCP host service: the television's radio test methods on the system bus. */
#pragma once

#include "base/bus.h"
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

    /** From now on the method answers like that. @throws Refusal for an unknown method or behaviour. */
    void set_behaviour(const std::string& method, const std::string& text);

private:
    [[nodiscard]] std::map<std::string, Method> methods();
    void handle(const Call& call);
    void ask_module(const Call& call, int late_by);
    void reply(const Call& call, int code, const std::string& text) const;
    void reply_with(const Call& call, const std::string& value) const;
    void emit(GVariant* values) const;
    void emit_values(const std::string& text) const;

    GDBusConnection* connection_;
    const ComponentLog& log_;
    std::map<std::string, Behaviour> behaviours_;
    std::vector<std::string> calls_;
    NcpLink link_;
    BusObject service_;
    BusObject simulation_;
};

} // namespace simulator
