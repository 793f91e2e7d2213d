#include "model/dbus_client.h"

#include "GuardedCallback.h"
#include "Log.h"

#include <algorithm>

namespace {

constexpr const char* service_bus_name = "org.orvane.qm_ncp_host";
constexpr const char* service_object_path = "/org/orvane/qm_ncp_host";
constexpr const char* service_interface = "org.orvane.qm_ncp_host.service";
constexpr const char* service_signal = "ncp_event";
constexpr int call_timeout_milliseconds = 120000;

void connection_closed(GDBusConnection*, gboolean, const GError* error, gpointer) {
    LOG_ERROR("The system bus connection was closed: %s", error != nullptr ? error->message : "by us");
}

} // namespace

DBusClient::~DBusClient() { release(); }

bool DBusClient::Init() {
    LOG_ERROR("[b]");
    const std::lock_guard lock(state_mutex);

    LOG_ERROR("check init");
    if (initialized) {
        LOG_ERROR("Already initialize DBus Client");
        return true;
    }
    if (!init_dbus()) {
        release();
        LOG_ERROR("Fail to initialize dbus");
        return false;
    }
    initialized = true;

    LOG_ERROR("[n]");
    return true;
}

bool DBusClient::init_dbus() {
    g_autoptr(GError) error = nullptr;

    LOG_ERROR("create_dbus_connection");
    connection.reset(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error));
    if (!connection) {
        print_dbus_error(error);
        LOG_ERROR("Fail to create dbus connection");
        return false;
    }
    // By default GIO silently exits the process when the bus goes away. Calls fail instead.
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    closed_handler = g_signal_connect(connection.get(), "closed", G_CALLBACK(connection_closed), nullptr);

    LOG_ERROR("create_dbus_proxy");
    proxy.reset(g_dbus_proxy_new_sync(connection.get(), G_DBUS_PROXY_FLAGS_NONE, nullptr, service_bus_name,
                                      service_object_path, service_interface, nullptr, &error));
    if (!proxy) {
        print_dbus_error(error);
        LOG_ERROR("Fail to create dbus proxy");
        return false;
    }

    LOG_ERROR("subscribe_signal");
    if (!subscribe_signal()) {
        LOG_ERROR("Fail to subscribe signal");
        return false;
    }

    LOG_ERROR("success to init dbus");
    return true;
}

bool DBusClient::subscribe_signal() {
    subscription_id = g_dbus_connection_signal_subscribe(
        connection.get(), nullptr, service_interface, service_signal, service_object_path, nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE, GUARDED(signal_callback), this, nullptr);
    return subscription_id != 0;
}

bool DBusClient::IsInitialized() {
    const std::lock_guard lock(state_mutex);
    return initialized;
}

void DBusClient::Deinit() {
    LOG_ERROR("[b]");
    const std::lock_guard lock(state_mutex);
    release();
    LOG_ERROR("[n]");
}

void DBusClient::release() {
    if (subscription_id != 0)
        g_dbus_connection_signal_unsubscribe(connection.get(), subscription_id);
    subscription_id = 0;
    if (closed_handler != 0)
        g_signal_handler_disconnect(connection.get(), closed_handler);
    closed_handler = 0;
    proxy.reset();
    connection.reset();
    initialized = false;
}

bool DBusClient::ProcessSyncCall(const std::string& method, GVariant* parameters, GVariant*& reply) {
    LOG_ERROR("[b] method = %s, timeout = %d msec", method.c_str(), call_timeout_milliseconds);
    // Sink a floating value, so that every return releases it.
    g_autoptr(GVariant) arguments = parameters != nullptr ? g_variant_ref_sink(parameters) : nullptr;
    const std::lock_guard lock(state_mutex);

    if (!initialized) {
        LOG_ERROR("Not Init Thing DBus Client");
        return false;
    }
    g_autoptr(GError) error = nullptr;
    GVariant* const answer =
        g_dbus_proxy_call_sync(proxy.get(), method.c_str(), arguments, G_DBUS_CALL_FLAGS_NONE,
                               call_timeout_milliseconds, nullptr, &error);
    if (answer == nullptr) {
        print_dbus_error(error);
        return false;
    }
    reply = answer;
    LOG_ERROR("[n]");
    return true;
}

bool DBusClient::RegisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback,
                                      void* user_data) {
    LOG_ERROR("[b] signal_name = %s", signal_name.c_str());
    if (signal_name.empty() || callback == nullptr) {
        LOG_ERROR("wrong param!!!");
        return false;
    }
    const std::lock_guard lock(state_mutex);
    if (!initialized) {
        LOG_ERROR("Not Init DBus Client");
        return false;
    }
    if (is_registered(signal_name, callback)) {
        LOG_ERROR("callback is already registered!");
        return false;
    }
    {
        const std::lock_guard registry_lock(registry_mutex);
        registry.push_back({signal_name, callback, user_data});
    }
    LOG_ERROR("[n]");
    return true;
}

bool DBusClient::is_registered(const std::string& signal_name, DBusSignalCB callback) {
    const std::lock_guard lock(registry_mutex);
    return std::ranges::any_of(registry,
                               [&](const Registration& entry) { return entry.is(signal_name, callback); });
}

bool DBusClient::UnregisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback) {
    LOG_ERROR("[b] signal_name = %s", signal_name.c_str());
    if (signal_name.empty() || callback == nullptr) {
        LOG_ERROR("wrong param!!!");
        return false;
    }
    const std::lock_guard lock(state_mutex);
    if (!initialized) {
        LOG_ERROR("Not Init DBus Client");
        return false;
    }
    std::unique_lock registry_lock(registry_mutex);
    // Entries are unique, so this removes at most one.
    const auto removed =
        std::erase_if(registry, [&](const Registration& e) { return e.is(signal_name, callback); });
    registry_lock.unlock();
    if (removed == 0) {
        LOG_ERROR("callback is already unregistered!");
        return false;
    }
    LOG_ERROR("[n]");
    return true;
}

void DBusClient::signal_callback(GDBusConnection* connection, const gchar* sender_name,
                                 const gchar* object_path, const gchar* interface_name,
                                 const gchar* signal_name, GVariant* parameters, gpointer user_data) {
    LOG_ERROR("connection : %p, sender_name : %s, object_path : %s, interface_name : %s, signal_name : %s",
              static_cast<void*>(connection), sender_name, object_path, interface_name, signal_name);
    if (user_data == nullptr) {
        LOG_ERROR("pDBusClient is NULL");
        return;
    }
    static_cast<DBusClient*>(user_data)->invoke_callback(signal_name, parameters);
    LOG_ERROR("[n]");
}

void DBusClient::invoke_callback(const std::string& signal_name, GVariant* parameters) {
    // Iterate over a copy without the lock: a callback may register and unregister callbacks.
    std::unique_lock registry_lock(registry_mutex);
    const std::vector<Registration> entries = registry;
    registry_lock.unlock();

    // The bus does not check the type of a signal.
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(s)"))) {
        LOG_ERROR("Signal %s has the type %s, expected (s)", signal_name.c_str(),
                  g_variant_get_type_string(parameters));
        return;
    }
    g_autofree gchar* event_text = nullptr;
    g_variant_get(parameters, "(s)", &event_text);
    LOG_ERROR("Event Data: [%s]", event_text);

    for (const Registration& entry : entries)
        if (entry.signal_name == signal_name)
            entry.callback(std::string(event_text), entry.user_data);
}

void DBusClient::print_dbus_error(const GError* error) {
    if (error == nullptr)
        LOG_ERROR("Error is NULL");
    else
        LOG_ERROR("Error Code[%d], Error Message[%s]", error->code, error->message);
}
