#include "television.h"

#include "base/strings.h"
#include "ncp_host/contract.h"

#include <fcntl.h>
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

std::vector<std::string> host_calls(const Client& client) {
    return to_strings(first_of(client.call(ncp_host, "Calls")).get());
}

void set_host_behaviour(const Client& client, const std::string& method, const std::string& behaviour) {
    client.call(ncp_host, "SetBehaviour", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

void send_event(const Client& client, const std::string& values, int times) {
    using namespace contract;
    for (int time = 0; time < times; ++time)
        g_dbus_connection_emit_signal(client.bus(), nullptr, service_path, service_interface, event_signal,
                                      tuple_of(values).get(), nullptr);
    g_dbus_connection_flush_sync(client.bus(), nullptr, nullptr);
}

std::string radio_state(const Client& client) {
    return printed(first_of(client.call(radio_module, "State")).get());
}

void take_picture(const std::string& path) {
    constexpr mode_t readable = 0644;
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
    this_television().call(ui, "Picture", g_variant_new("(h)", 0), {file.get()});
}

} // namespace simulator
