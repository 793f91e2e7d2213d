#include "input.h"
#include "model/dbus_client.h"
#include "model/ncp_requester.h"

#include <gio/gio.h>

namespace {

GVariant* reply = nullptr; // the answer to the next call

// Uses a bus without any other service.
ncp_requester& requester() {
    const char* const bus = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    expect(bus != nullptr && g_setenv("DBUS_SYSTEM_BUS_ADDRESS", bus, TRUE) != FALSE);
    ncp_requester& started = ncp_requester::getInstance();
    started.start();
    return started;
}

gboolean deliver_event(gpointer value) {
    static DBusClient client;
    DBusClient::signal_callback(nullptr, ":1.2", "/path", "the.Interface", "ncp_event",
                                static_cast<GVariant*>(value), &client);
    return G_SOURCE_REMOVE;
}

} // namespace

extern "C" GVariant* __wrap_g_dbus_proxy_call_sync() { return g_variant_ref(reply); }

// Sends a tuple of any type and value as the reply to a command and to the statistics request, and as an event. The
// input up to the first zero is its type, the rest its value.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static ncp_requester& radio = requester();
    const std::string all = text_of(bytes, size);
    const std::string type = all.substr(0, all.find('\0'));
    if (type.size() == all.size() || !g_variant_type_string_is_valid(type.c_str()) || type.front() != '(' ||
        !g_variant_type_is_definite(G_VARIANT_TYPE(type.c_str())))
        return 0;
    const std::string data = all.substr(type.size() + 1);
    g_autoptr(GBytes) value_bytes = g_bytes_new(data.data(), data.size());
    g_autoptr(GVariant) value =
        g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(type.c_str()), value_bytes, FALSE));
    reply = value;
    const bool is_code = g_variant_is_of_type(value, G_VARIANT_TYPE("(i)")) != FALSE;
    std::string statistics;
    expect(!radio.ember_set_channel(11) || is_code);
    expect(!radio.ember_get_rx_statistics(statistics) || !is_code);
    g_idle_add(deliver_event, value);
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    return 0;
}
