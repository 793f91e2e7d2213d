#pragma once

#include "base/bus.h"
#include "base/wait_until.h"
#include "support/television.h"

#include <gtest/gtest.h>

/** The television's own NCP host service; its answers last beyond a test. */
class ScriptedService {
public:
    /** Answers a method with a tuple in GVariant text, for example "('12 packets', 0)". */
    void answer(const std::string& method, const std::string& reply) const {
        let_host_answer(television_, method, "reply " + reply);
    }

    /** The calls so far with their arguments: "ember_set_channel(11)". */
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::vector<std::string> all = asked_of_host(television_);
        return {all.begin() + earlier_calls_, all.end()};
    }

    /** Emits "ncp_event" with any values; returns when this thread has dispatched it. */
    void emit(const std::string& values) const {
        send_event(television_, values);
        // What was sent before a call has arrived when it returns, at the bus and then with the application.
        asked_of_host(television_);
        asked_of_host(simulator::this_television());
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    }

private:
    // A connection of its own, which the application neither closes nor waits on.
    simulator::Client television_{simulator::connect_to_bus(getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
    std::ptrdiff_t earlier_calls_ = std::ssize(asked_of_host(television_));
};

/** What the listeners of each number have heard, "1 ready". Listeners are distinct; their user data is the notes. */
using Notes = std::vector<std::string>;
template <int number>
void note(const std::string& text, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + text);
}

/** Drops the process's shared system bus connection, so that the next has the present address. */
inline void forget_system_bus() {
    GWeakRef remembered;
    g_weak_ref_init(&remembered, simulator::connect_to_system_bus().get());
    // The bus library's thread holds it a moment longer, while it delivers what came in last.
    const auto is_dropped = [&remembered] {
        g_main_context_iteration(nullptr, FALSE);
        return !simulator::BusConnection(static_cast<GDBusConnection*>(g_weak_ref_get(&remembered)));
    };
    EXPECT_TRUE(simulator::wait_until(is_dropped, std::chrono::seconds(1))) << "somebody still holds it";
    g_weak_ref_clear(&remembered);
}
