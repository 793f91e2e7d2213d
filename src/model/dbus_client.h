/** Client of the NCP host service on the D-Bus system bus: synchronous calls and signals. */
#pragma once

#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/** Receives a signal's text and the user data of the registration. */
using DBusSignalCB = void (*)(const std::string& data, void* user_data);

/** Deleter that drops one reference to a GObject. */
struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectHandle = std::unique_ptr<T, GObjectUnref>;

/**
 * A client of the service "org.orvane.qm_ncp_host", for use on one thread.
 *
 * Signals arrive in the thread-default main context of the thread that called `Init`. Registered callbacks survive
 * `Deinit` and receive signals again after the next `Init`.
 */
class DBusClient {
public:
    DBusClient() = default;
    DBusClient(const DBusClient&) = delete;
    DBusClient& operator=(const DBusClient&) = delete;
    /** Disconnects as `Deinit` does, without logging. */
    ~DBusClient();

    /**
     * Connects to the system bus, creates the service's proxy and subscribes to the signal "ncp_event". The
     * service need not be running. On failure, logs and releases everything.
     *
     * @return true if the client is now initialised, or already was.
     */
    bool Init();

    /** Returns whether `Init` succeeded and no `Deinit` followed. */
    bool IsInitialized();

    /** Unsubscribes and releases the proxy and the connection, if any. */
    void Deinit();

    /**
     * Calls a method of the service and waits up to 120000 ms for its reply.
     *
     * @param method     the method's name without its interface.
     * @param parameters a tuple, or null for none; a floating value is always consumed.
     * @param reply      receives the reply, to be released with `g_variant_unref`; unchanged on failure.
     * @return false (logged) if the client is not initialised, the call times out or the reply is an error.
     */
    bool ProcessSyncCall(const std::string& method, GVariant* parameters, GVariant*& reply);

    /**
     * Adds a callback for a signal. Callbacks run in the order in which they were added.
     *
     * @return false (logged) if the name is empty, the callback is null or already registered for this signal, or
     *         the client is not initialised.
     */
    bool RegisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback, void* user_data);

    /**
     * Removes a callback from a signal; a dispatch in progress still calls it.
     *
     * @return false (logged) if the name is empty, the callback is null or not registered for this signal, or the
     *         client is not initialised.
     */
    bool UnregisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback);

    /** Logs an error's code and message; the error may be null, and the caller keeps it. */
    static void print_dbus_error(const GError* error);

    /** `GDBusSignalCallback` with the client as user data. Logs and drops signals that are not of type (s). */
    static void signal_callback(GDBusConnection* connection, const gchar* sender_name,
                                const gchar* object_path, const gchar* interface_name,
                                const gchar* signal_name, GVariant* parameters, gpointer user_data);

private:
    struct Registration {
        std::string signal_name;
        DBusSignalCB callback;
        void* user_data;

        bool is(const std::string& name, DBusSignalCB function) const {
            return signal_name == name && callback == function;
        }
    };

    bool init_dbus();
    bool subscribe_signal();
    void release();
    bool is_registered(const std::string& signal_name, DBusSignalCB callback);
    void invoke_callback(const std::string& signal_name, GVariant* parameters);

    bool initialized = false;
    GObjectHandle<GDBusConnection> connection;
    GObjectHandle<GDBusProxy> proxy;
    guint subscription_id = 0; // 0: none
    gulong closed_handler = 0; // 0: none
    // Guards the fields above. Lock it before registry_mutex. It is not held while callbacks run.
    std::recursive_mutex state_mutex;
    std::vector<Registration> registry;
    std::mutex registry_mutex;
};
