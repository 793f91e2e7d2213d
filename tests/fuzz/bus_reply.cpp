#include "bus_value.h"
#include "model/ncp_requester.h"

namespace {

GVariant* reply = nullptr; // to the next call

// On a bus where nobody else answers.
ncp_requester& requester() {
    const char* const bus = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    expect(bus != nullptr && g_setenv("DBUS_SYSTEM_BUS_ADDRESS", bus, TRUE) != FALSE);
    ncp_requester& started = ncp_requester::getInstance();
    started.start();
    return started;
}

} // namespace

extern "C" GVariant* __wrap_g_dbus_proxy_call_sync() { return g_variant_ref(reply); }

// A reply of any type and value to a command and to the question for the statistics.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static ncp_requester& radio = requester();
    g_autoptr(GVariant) value = bus_value(bytes, size);
    if (value == nullptr)
        return 0;
    reply = value;
    const bool is_code = g_variant_is_of_type(value, G_VARIANT_TYPE("(i)")) != FALSE;
    std::string statistics;
    expect(!radio.ember_set_channel(11) || is_code);
    expect(!radio.ember_get_rx_statistics(statistics) || !is_code);
    return 0;
}
