#include "bus_value.h"
#include "model/dbus_client.h"

// An event of any type and value.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static DBusClient client;
    g_autoptr(GVariant) parameters = bus_value(bytes, size);
    if (parameters != nullptr)
        DBusClient::signal_callback(nullptr, ":1.2", "/path", "the.Interface", "ncp_event", parameters,
                                    &client);
    return 0;
}
