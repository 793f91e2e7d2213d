#include "television.h"

#include "base/strings.h"
#include "ncp_host/contract.h"

#include <stdexcept>

namespace simulator {

BusConnection connect_to_system_bus() {
    g_autoptr(GError) error = nullptr;
    BusConnection connection(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error));
    if (!connection)
        throw std::runtime_error(std::string("no system bus: ") + error->message);
    return connection;
}

Client this_television() { return Client(connect_to_system_bus()); }

std::vector<std::string> asked_of_host(const Client& client) {
    return to_strings(first_of(client.call(ncp_host, "Calls")).get());
}

void let_host_answer(const Client& client, const std::string& method, const std::string& behaviour) {
    client.call(ncp_host, "SetBehaviour", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

void send_event(const Client& client, const std::string& values) {
    using namespace contract;
    g_dbus_connection_emit_signal(client.bus(), nullptr, service_path, service_interface, event_signal,
                                  tuple_of(values).get(), nullptr);
    g_dbus_connection_flush_sync(client.bus(), nullptr, nullptr);
}

RadioState radio_state(const Client& client) {
    const Value state = first_of(client.call(radio_module, "State"));
    const char* mode = "";
    gboolean streams = FALSE;
    g_variant_lookup(state.get(), "mode", "&s", &mode);
    g_variant_lookup(state.get(), "stream", "b", &streams);
    return {mode, streams != FALSE};
}

} // namespace simulator
