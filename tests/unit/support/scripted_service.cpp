#include "support/scripted_service.h"

#include "common/bus_object.h"
#include "common/texts.h"
#include "host/ncp_contract.h"

namespace contract = station::contract;

// A connection of its own, which the application neither closes nor waits on.
ScriptedService::ScriptedService()
    : television_(station::connect_to_bus(getenv("DBUS_SYSTEM_BUS_ADDRESS"))),
      earlier_calls_(all_calls().size()) {}

ScriptedService::~ScriptedService() {
    for (const std::string& method : told_)
        television_.call(station::ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), "normal"));
}

void ScriptedService::behave(const std::string& method, const std::string& behaviour) {
    television_.call(station::ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
    told_.push_back(method);
}

std::vector<std::string> ScriptedService::all_calls() {
    return station::texts_of(station::first_of(television_.call(station::ncp_host, "Asked")).get());
}

std::vector<std::string> ScriptedService::calls() {
    std::vector<std::string> calls = all_calls();
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(earlier_calls_));
    return calls;
}

void ScriptedService::emit(const std::string& signal, const std::string& arguments) {
    g_dbus_connection_emit_signal(
        television_.bus(), nullptr, contract::service_path, contract::service_interface, signal.c_str(),
        g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, nullptr), nullptr);
    // What was sent before a call has arrived when the call returns, at the bus and then with the
    // application.
    all_calls();
    station::Remote(station::connect_to_system_bus()).call(station::ncp_host, "Asked");
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

void forget_system_bus() {
    GWeakRef remembered;
    g_weak_ref_init(&remembered, station::connect_to_system_bus().get());
    // The bus library's thread holds it a moment longer, while it delivers what came in last.
    while (station::BusConnection(static_cast<GDBusConnection*>(g_weak_ref_get(&remembered))) != nullptr) {
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(1000);
    }
    g_weak_ref_clear(&remembered);
}
