#pragma once

#include "base/bus.h"
#include "support/television.h"

/** The television's NCP host; the answers that a test sets persist in later tests. */
class ScriptedService {
public:
    /** Sets a method's answer, a tuple in GVariant text, for example "('12 packets', 0)". */
    void answer(const std::string& method, const std::string& reply) const {
        set_host_behaviour(television_, method, "reply " + reply);
    }

    /** Emits "ncp_event" with any values, and dispatches it in this thread. */
    void emit(const std::string& values) const {
        send_event(television_, values);
        // The first call returns after the bus has received the event, the second after the event has arrived here.
        host_calls(television_);
        host_calls(simulator::this_television());
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    }

private:
    // A private connection that the application neither closes nor uses.
    simulator::Client television_{simulator::connect_to_bus(getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
};

/** What each numbered listener has received, for example "1 ready". */
using Notes = std::vector<std::string>;
/** The listener with this number. @param notes its user data, a pointer to the Notes. */
template <int number>
void note(const std::string& text, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + text);
}
