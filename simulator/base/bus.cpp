#include "bus.h"

#include "contracts.h"
#include "strings.h"

#include <gio/gunixfdlist.h>

namespace simulator {
namespace {

[[noreturn]] void fail(const std::string& what, const GError* error) {
    throw std::runtime_error(what + ": " + (error != nullptr ? error->message : "refused"));
}

} // namespace

BusConnection connect_to_bus(const std::string& address) {
    g_autoptr(GError) error = nullptr;
    BusConnection connection(
        g_dbus_connection_new_for_address_sync(address.c_str(), message_bus, nullptr, nullptr, &error));
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

const GDBusNodeInfo& contract_of(const std::string& interface) {
    using Node = std::unique_ptr<GDBusNodeInfo, decltype(&g_dbus_node_info_unref)>;
    static std::map<std::string, Node> contracts;
    if (contracts.empty())
        for (const char* const xml : contract_texts) {
            Node node(g_dbus_node_info_new_for_xml(xml, nullptr), g_dbus_node_info_unref);
            contracts.emplace(node->interfaces[0]->name, std::move(node));
        }
    return *contracts.at(interface);
}

Call::Call(GDBusMethodInvocation* invocation) : invocation_(invocation, Release<g_object_unref>()) {}

std::string Call::method() const { return g_dbus_method_invocation_get_method_name(invocation()); }

std::string Call::sender() const { return g_dbus_method_invocation_get_sender(invocation()); }

Value Call::argument(gsize index) const {
    return Value(g_variant_get_child_value(g_dbus_method_invocation_get_parameters(invocation()), index));
}

std::string Call::text(gsize index) const { return g_variant_get_string(argument(index).get(), nullptr); }

std::vector<std::string> Call::texts(gsize index) const { return to_strings(argument(index).get()); }

int Call::number(gsize index) const { return g_variant_get_int32(argument(index).get()); }

bool Call::flag(gsize index) const { return g_variant_get_boolean(argument(index).get()) != FALSE; }

std::chrono::milliseconds Call::milliseconds(gsize index) const {
    return std::chrono::milliseconds(g_variant_get_uint32(argument(index).get()));
}

int Call::take_descriptor(int index) const {
    GUnixFDList* const list =
        g_dbus_message_get_unix_fd_list(g_dbus_method_invocation_get_message(invocation()));
    return list != nullptr && index < g_unix_fd_list_get_length(list)
               ? g_unix_fd_list_get(list, index, nullptr)
               : -1;
}

// GLib's answer functions consume a reference to the invocation.
void Call::answer(std::initializer_list<GVariant*> values) const {
    *is_settled_ = true;
    g_object_ref(invocation());
    g_dbus_method_invocation_return_value(invocation(), g_variant_new_tuple(values.begin(), values.size()));
}

void Call::refuse(const Refusal& refusal) const {
    *is_settled_ = true;
    g_object_ref(invocation());
    g_dbus_method_invocation_return_dbus_error(invocation(), refusal.name().c_str(), refusal.what());
}

void Call::finish(const char* error, const std::string& failure) const {
    return failure.empty() ? answer() : refuse(Refusal(error, failure));
}

Call Call::later() const {
    *is_settled_ = true;
    return *this;
}

std::map<std::string, Method> every_method(const std::string& interface, const Method& method) {
    std::map<std::string, Method> methods;
    const auto* const contract = contract_of(interface).interfaces[0];
    for (auto** each = contract->methods; each != nullptr && *each != nullptr; ++each)
        methods[(*each)->name] = method;
    return methods;
}

BusObject::BusObject(GDBusConnection* connection, const std::string& interface,
                     std::map<std::string, Method> methods)
    : connection_(connection), contract_(contract_of(interface)), methods_(std::move(methods)) {
    static constexpr GDBusInterfaceVTable functions = {call, nullptr, nullptr, {}};
    for (const auto& [name, method] : every_method(interface, {}))
        if (!methods_.contains(name))
            fail(std::string(interface).append(".").append(name), nullptr);
    g_autoptr(GError) error = nullptr;
    registration_ = g_dbus_connection_register_object(connection, contract_.path, contract_.interfaces[0],
                                                      &functions, this, nullptr, &error);
    if (registration_ == 0)
        fail(contract_.path, error);
}

void BusObject::emit(const char* signal, GVariant* values) const {
    g_dbus_connection_emit_signal(connection_, nullptr, contract_.path, contract_.interfaces[0]->name, signal,
                                  values, nullptr);
}

void BusObject::call(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                     const char* /*interface*/, const char* method, GVariant* /*arguments*/,
                     GDBusMethodInvocation* invocation, gpointer self) {
    Call call(invocation);
    try {
        const Method answer = static_cast<BusObject*>(self)->methods_.at(method);
        answer(call); // may destroy this object
        if (!call.is_settled())
            call.answer();
    } catch (const Refusal& refusal) {
        call.refuse(refusal);
    } catch (const std::exception& error) {
        call.refuse(Refusal("Failed", error.what()));
    }
}

} // namespace simulator
