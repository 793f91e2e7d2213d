#include "base/strings.h"
#include "input.h"
#include "model/dbus_client.h"
#include "model/ncp_requester.h"

namespace {

GVariant* reply = nullptr; // the answer to the next call

// Connects to a bus that has no other service.
ncp_requester& requester() {
    const char* const bus = getenv("DBUS_SESSION_BUS_ADDRESS");
    expect(bus != nullptr && setenv("DBUS_SYSTEM_BUS_ADDRESS", bus, 1) == 0);
    ncp_requester& started = ncp_requester::getInstance();
    started.start();
    return started;
}

} // namespace

extern "C" GVariant* __wrap_g_dbus_proxy_call_sync() { return g_variant_ref(reply); }

// Sends a tuple of any type and value as the reply to a command and to the statistics request, and as an event.
void fuzz(const std::string& input) {
    static ncp_requester& radio = requester();
    static DBusClient client;
    const simulator::Value value = simulator::tuple_of(input);
    if (!value)
        return;
    reply = value.get();
    const bool is_code = g_variant_is_of_type(reply, G_VARIANT_TYPE("(i)")) != FALSE;
    std::string statistics;
    expect(!radio.ember_set_channel(11) || is_code);
    expect(!radio.ember_get_rx_statistics(statistics) || !is_code);
    DBusClient::signal_callback(nullptr, ":1.2", "/path", "the.Interface", "ncp_event", reply, &client);
}
