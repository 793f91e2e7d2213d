#include "remote_radio.h"

#include "common/texts.h"
#include "host/ncp_contract.h"

namespace station {

std::vector<std::string> asked_of_host(const Remote& remote) {
    return texts_of(first_of(remote.call(ncp_host, "Asked")).get());
}

void let_host_answer(const Remote& remote, const std::string& method, const std::string& behaviour) {
    remote.call(ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

void send_event(const Remote& remote, const std::string& values) {
    using namespace contract;
    g_dbus_connection_emit_signal(remote.bus(), nullptr, service_path, service_interface, event_signal,
                                  tuple_of(values).get(), nullptr);
    g_dbus_connection_flush_sync(remote.bus(), nullptr, nullptr);
}

RadioState radio_state(const Remote& remote) {
    const Value state = first_of(remote.call(radio_module, "State"));
    const char* mode = "";
    gboolean streams = FALSE;
    g_variant_lookup(state.get(), "mode", "&s", &mode);
    g_variant_lookup(state.get(), "stream", "b", &streams);
    return {mode, streams != FALSE};
}

} // namespace station
