#include "support/scripted_service.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr guint32 do_not_queue = 4;

// A round trip to the bus: everything sent on the connection before is with its receivers' connections then,
// and everything sent to it before has arrived.
void round_trip(GDBusConnection* connection) {
    [[maybe_unused]] g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", nullptr,
        nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
}

// A bus daemon of the tests' own. It leaves its parent, so that a test may wait for every child it has.
class PrivateBus {
public:
    PrivateBus() {
        FILE* const output = popen(
            "dbus-daemon --session --fork --address=unix:dir=/tmp --print-address=1 --print-pid=1", "r");
        std::array<char, 256> bus_address{};
        if (output == nullptr || fscanf(output, "%255s %d", bus_address.data(), &process) != 2)
            throw std::runtime_error("no bus daemon");
        pclose(output);
        address = bus_address.data();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() { kill(process, SIGTERM); }

    std::string address;

private:
    pid_t process = 0;
};

// The television's own NCP host service has the name on its system bus, so the scripted one gets another bus.
void use_private_system_bus() {
    static const PrivateBus bus;
    setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address.c_str(), 1);
}

GVariant* parse(const std::string& text) {
    GVariant* const value = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr);
    if (value == nullptr)
        throw std::invalid_argument("not a GVariant: " + text);
    return value;
}

} // namespace

ScriptedService::ScriptedService() {
    use_private_system_bus();
    g_autofree gchar* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_autoptr(GError) error = nullptr;
    connection.reset(g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, &error));
    if (!connection)
        throw std::runtime_error(error->message);
    filter_id = g_dbus_connection_add_filter(connection.get(), filter, this, nullptr);
    g_autoptr(GVariant) owned = g_dbus_connection_call_sync(
        connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", bus_name, do_not_queue), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, &error);
    if (owned == nullptr)
        throw std::runtime_error(error->message);
}

ScriptedService::~ScriptedService() {
    g_dbus_connection_remove_filter(connection.get(), filter_id);
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
}

void ScriptedService::answer(const std::string& method, const std::string& reply) {
    const std::lock_guard lock(mutex);
    scripts[method] = {Script::Kind::reply, reply};
}

void ScriptedService::refuse(const std::string& method, const std::string& error_name) {
    const std::lock_guard lock(mutex);
    scripts[method] = {Script::Kind::error, error_name};
}

void ScriptedService::vanish_in(const std::string& method) {
    const std::lock_guard lock(mutex);
    scripts[method] = {Script::Kind::vanish, {}};
}

std::vector<std::string> ScriptedService::calls() {
    const std::lock_guard lock(mutex);
    return received;
}

void ScriptedService::emit(const std::string& signal, const std::string& arguments) {
    g_dbus_connection_emit_signal(connection.get(), nullptr, object_path, interface, signal.c_str(),
                                  parse(arguments), nullptr);
    round_trip(connection.get());
    const GObjectHandle<GDBusConnection> receiver(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    round_trip(receiver.get());
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

GDBusMessage* ScriptedService::filter(GDBusConnection* /*connection*/, GDBusMessage* message,
                                      gboolean incoming, gpointer self) {
    const bool is_call = incoming != FALSE &&
                         g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL &&
                         g_strcmp0(g_dbus_message_get_interface(message), interface) == 0;
    if (!is_call || !static_cast<ScriptedService*>(self)->handle(message))
        return message;
    g_object_unref(message);
    return nullptr;
}

bool ScriptedService::handle(GDBusMessage* call) {
    const std::lock_guard lock(mutex);
    const std::string method = g_dbus_message_get_member(call);
    GVariant* const body = g_dbus_message_get_body(call);
    g_autofree gchar* arguments = body != nullptr ? g_variant_print(body, FALSE) : g_strdup("()");
    received.push_back(method + " " + arguments);

    const auto script = scripts.find(method);
    if (script == scripts.end())
        return false;
    if (script->second.kind == Script::Kind::vanish) {
        g_dbus_connection_close(connection.get(), nullptr, nullptr, nullptr);
        return true;
    }
    GObjectHandle<GDBusMessage> reply;
    if (script->second.kind == Script::Kind::reply) {
        reply.reset(g_dbus_message_new_method_reply(call));
        g_dbus_message_set_body(reply.get(), parse(script->second.text));
    } else {
        reply.reset(g_dbus_message_new_method_error_literal(call, script->second.text.c_str(), "scripted"));
    }
    g_dbus_connection_send_message(connection.get(), reply.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                   nullptr);
    return true;
}

void forget_system_bus() {
    GWeakRef remembered;
    {
        const GObjectHandle<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
        g_weak_ref_init(&remembered, shared.get());
    }
    // The bus library's thread holds it a moment longer, while it delivers what came in last.
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const GObjectHandle<GObject> still_there(static_cast<GObject*>(g_weak_ref_get(&remembered)));
        if (!still_there)
            break;
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(1000);
    }
    g_weak_ref_clear(&remembered);
}
