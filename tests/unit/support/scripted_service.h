#pragma once

#include "base/bus.h"
#include "base/wait_until.h"
#include "support/television.h"

#include <gtest/gtest.h>

/** The television's NCP host; its answers persist across tests. */
class ScriptedService {
public:
    /** Sets a method's answer, a tuple in GVariant text, for example "('12 packets', 0)". */
    void answer(const std::string& method, const std::string& reply) const {
        set_host_behaviour(television_, method, "reply " + reply);
    }

    /** The calls so far with their arguments: "ember_set_channel(11)". */
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::vector<std::string> all = host_calls(television_);
        return {all.begin() + earlier_calls_, all.end()};
    }

    /** Emits "ncp_event" with any values, and dispatches it in this thread. */
    void emit(const std::string& values) const {
        send_event(television_, values);
        // A synchronous call makes sure that earlier messages have arrived, first at the bus and then here.
        host_calls(television_);
        host_calls(simulator::this_television());
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    }

private:
    // A private connection that the application neither closes nor uses.
    simulator::Client television_{simulator::connect_to_bus(getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
    std::ptrdiff_t earlier_calls_ = std::ssize(host_calls(television_));
};

/** What each numbered listener has received, for example "1 ready". Listeners get the notes as user data. */
using Notes = std::vector<std::string>;
template <int number>
void note(const std::string& text, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + text);
}

/** Closes the process's shared system bus connection, so that the next one uses the current address. */
inline void forget_system_bus() {
    GWeakRef remembered;
    g_weak_ref_init(&remembered, simulator::connect_to_system_bus().get());
    // GDBus's worker thread keeps it a little longer, to deliver the last messages.
    const auto is_dropped = [&remembered] {
        g_main_context_iteration(nullptr, FALSE);
        return !simulator::BusConnection(static_cast<GDBusConnection*>(g_weak_ref_get(&remembered)));
    };
    EXPECT_TRUE(simulator::wait_until(is_dropped, std::chrono::seconds(1)))
        << "the connection is still referenced";
    g_weak_ref_clear(&remembered);
}
