#include "input.h"
#include "model/dbus_client.h"

// An event of any type and value; its type is the text up to the first zero.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static DBusClient client;
    const std::string all = text_of(bytes, size);
    const std::string type = all.substr(0, all.find('\0'));
    if (type.size() == all.size() || !g_variant_type_string_is_valid(type.c_str()) || type.front() != '(')
        return 0;
    const std::string value = all.substr(type.size() + 1);
    if (!g_variant_type_is_definite(G_VARIANT_TYPE(type.c_str())))
        return 0;
    g_autoptr(GBytes) data = g_bytes_new(value.data(), value.size());
    g_autoptr(GVariant) parameters =
        g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(type.c_str()), data, FALSE));
    DBusClient::signal_callback(nullptr, ":1.2", "/path", "the.Interface", "ncp_event", parameters, &client);
    return 0;
}
