#pragma once

#include "common/bus_object.h"
#include "common/texts.h"
#include "host/ncp_contract.h"
#include "remote/remote.h"

#include <gtest/gtest.h>

/** The television's own NCP host service, which answers as it is told, also by an earlier test. */
class ScriptedService {
public:
    /** Answers a method with a tuple in GVariant text, for example "('12 packets', 0)". */
    void answer(const std::string& method, const std::string& reply) { behave(method, "reply " + reply); }
    /** Answers a method with a D-Bus error. */
    void refuse(const std::string& method) { behave(method, "error"); }

    /** The calls so far with their arguments: "ember_set_channel(11)". */
    std::vector<std::string> calls() {
        const std::vector<std::string> all = all_calls();
        return {all.begin() + earlier_calls_, all.end()};
    }

    /** Emits a signal of the service, with any arguments; returns when this thread has dispatched it. */
    void emit(const std::string& signal, const std::string& arguments) {
        using namespace station::contract;
        GVariant* const parsed = g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, nullptr);
        g_dbus_connection_emit_signal(television_.bus(), nullptr, service_path, service_interface,
                                      signal.c_str(), parsed, nullptr);
        // What was sent before a call has arrived when it returns, at the bus and then with the application.
        all_calls();
        station::Remote(station::connect_to_system_bus()).call(station::ncp_host, "Asked");
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
    }

private:
    void behave(const std::string& method, const std::string& behaviour) {
        television_.call(station::ncp_host, "Answer",
                         g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
    }
    std::vector<std::string> all_calls() {
        return station::texts_of(station::first_of(television_.call(station::ncp_host, "Asked")).get());
    }

    // A connection of its own, which the application neither closes nor waits on.
    station::Remote television_{station::connect_to_bus(getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
    std::ptrdiff_t earlier_calls_ = std::ssize(all_calls());
};

/** What listeners of this number have heard: "1 ready". They are distinct, and their user data is the notes.
 */
using Notes = std::vector<std::string>;
template <int number>
void note(const std::string& text, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + text);
}

/** Drops the process's shared system bus connection, so that the next has the present address. */
inline void forget_system_bus() {
    GWeakRef remembered;
    g_weak_ref_init(&remembered, station::connect_to_system_bus().get());
    const auto is_held = [&remembered] {
        return station::BusConnection(static_cast<GDBusConnection*>(g_weak_ref_get(&remembered))) != nullptr;
    };
    // The bus library's thread holds it a moment longer, while it delivers what came in last.
    for (int patience = 1000; patience > 0 && is_held(); --patience) {
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(1000);
    }
    EXPECT_FALSE(is_held()) << "somebody still holds the connection";
    g_weak_ref_clear(&remembered);
}
