/** The NCP host service: the television's radio test methods on the system bus. */
#pragma once

#include "base/bus.h"
#include "base/event_source.h"
#include "base/log.h"
#include "ncp_link.h"

#include <list>

namespace simulator {

/** How a method answers. */
struct Behaviour {
    enum class Kind {
        normal, /**< the radio module's answer */
        code,   /**< a fixed result code, without asking the module */
        error,  /**< a D-Bus error */
        late,   /**< the module's answer, delayed */
        never,  /**< no reply */
        dies,   /**< no reply, and the host exits */
        reply,  /**< a fixed value of any type */
    };
    Kind kind = Kind::normal;
    int number = 0;         /**< the code, or the delay in milliseconds */
    std::string value = {}; /**< a tuple as GVariant text */
};

/** Parses "normal", "code N", "error", "late MS", "never", "dies" or "reply (VALUES)"; else returns nothing. */
std::optional<Behaviour> parse_behaviour(const std::string& text);

/** Uses a private bus connection, so destroying the host leaves pending calls without an answer. */
class NcpHost : public Simulation {
public:
    /**
     * @param answers how methods answer, each "METHOD=BEHAVIOUR".
     * @param die     requests this object's destruction, which must happen after `die` returns.
     * @throws std::runtime_error for an invalid behaviour, or without a system bus.
     */
    NcpHost(const std::vector<std::string>& answers, std::function<void()> die);
    ~NcpHost() override;

    [[nodiscard]] std::map<std::string, Method> methods() override;

private:
    /** @throws Refusal for an unknown method or behaviour. */
    void set_behaviour(const std::string& method, const std::string& text);
    void handle(const Call& call);
    void ask_module(const Call& call, int late_by);
    void reply(const Call& call, int code, const std::string& text) const;
    void reply_with(const Call& call, const std::string& value) const;
    void emit(GVariant* values) const;

    ComponentLog log_{"ncp_host"};
    BusConnection connection_;
    std::function<void()> die_;
    std::map<std::string, Behaviour> behaviours_;
    std::vector<std::string> calls_;
    std::list<EventSource> late_replies_;
    NcpLink link_;
    BusObject service_;
};

} // namespace simulator
