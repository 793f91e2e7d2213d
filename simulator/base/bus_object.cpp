#include "bus_object.h"

#include "refusal.h"

#include <stdexcept>

namespace simulator {
namespace {

[[noreturn]] void fail(const std::string& what, const GError* error) {
    throw std::runtime_error(what + ": " + (error != nullptr ? error->message : "refused"));
}

} // namespace

BusConnection connect_to_system_bus() {
    g_autoptr(GError) error = nullptr;
    BusConnection connection(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error));
    if (!connection)
        fail("no system bus", error);
    return connection;
}

BusConnection connect_to_bus(const std::string& address) {
    g_autoptr(GError) error = nullptr;
    BusConnection connection(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error));
    if (!connection)
        fail("no bus at " + address, error);
    return connection;
}

void own_name(GDBusConnection* connection, const char* name) {
    constexpr guint do_not_queue = 4;
    constexpr guint primary_owner = 1;
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, do_not_queue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        &error);
    guint result = 0;
    if (reply != nullptr)
        g_variant_get(reply, "(u)", &result);
    if (result != primary_owner)
        fail(std::string("cannot own ") + name, error);
}

BusObject::BusObject(GDBusConnection* connection, const char* path, const char* introspection,
                     MethodHandler handler)
    : connection_(connection), handler_(std::move(handler)) {
    static constexpr GDBusInterfaceVTable functions = {call, nullptr, nullptr, {}};
    g_autoptr(GError) error = nullptr;
    g_autoptr(GDBusNodeInfo) node = g_dbus_node_info_new_for_xml(introspection, &error);
    if (node == nullptr)
        fail("bad introspection", error);
    registration_ = g_dbus_connection_register_object(connection, path, node->interfaces[0], &functions, this,
                                                      nullptr, &error);
    if (registration_ == 0)
        fail(path, error);
}

void BusObject::call(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                     const char* /*interface*/, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self) {
    try {
        static_cast<BusObject*>(self)->handler_(method, arguments, invocation);
    } catch (const Refusal& refusal) {
        refusal.answer(invocation);
    }
}

} // namespace simulator
