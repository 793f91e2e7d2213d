/** The link to the NCP host service on the D-Bus system bus: synchronous calls, and signals. */
#pragma once

#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/** Receives a signal's text, and the user data given when it was registered. */
using DBusSignalCB = void (*)(const std::string& data, void* user_data);

/** Drops one reference to a GObject. */
struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectHandle = std::unique_ptr<T, GObjectUnref>;

/**
 * A client of the service "org.orvane.qm_ncp_host", used on one thread.
 *
 * Signals are delivered in the thread-default main context of the thread that called `Init`. The registry of
 * callbacks outlives `Deinit`: what was not unregistered receives signals again after the next `Init`.
 */
class DBusClient {
public:
    DBusClient() = default;
    DBusClient(const DBusClient&) = delete;
    DBusClient& operator=(const DBusClient&) = delete;
    /** Releases the link as `Deinit` does, without a message. */
    ~DBusClient();

    /**
     * Connects to the system bus, makes the service's proxy and subscribes to the signal "ncp_event". The
     * service itself need not run. A failure is logged and leaves nothing behind.
     *
     * @return true when the client is initialised, also when it was so already.
     */
    bool Init();

    /** Whether `Init` succeeded and no `Deinit` followed. */
    bool IsInitialized();

    /** Unsubscribes and releases the proxy and the connection, as far as they are there. */
    void Deinit();

    /**
     * Calls a method of the service and waits for its reply, at most 120000 ms.
     *
     * @param method     the method's name without its interface.
     * @param parameters a tuple, or null for none; a floating value is consumed whether it is sent or not.
     * @param reply      receives the reply, which the caller releases with `g_variant_unref`; unwritten on
     *                   failure.
     * @return false (logged) when the client is not initialised, nobody answers in time or the answer is an
     *         error.
     */
    bool ProcessSyncCall(const std::string& method, GVariant* parameters, GVariant*& reply);

    /**
     * Adds a callback for a signal, called after those that were added before it.
     *
     * @return false (logged) when the name is empty, the callback is null or there with that name already, or
     *         the client is not initialised.
     */
    bool RegisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback, void* user_data);

    /**
     * Removes a callback from a signal; a dispatch in progress still calls it.
     *
     * @return false (logged) when the name is empty, the callback is null or not there with that name, or the
     *         client is not initialised.
     */
    bool UnregisterDBusSignalCB(const std::string& signal_name, DBusSignalCB callback);

    /** Logs an error's code and message; the error may be null and stays the caller's. */
    static void print_dbus_error(const GError* error);

    /** The subscription's `GDBusSignalCallback`, given the client. Logs a signal that is not of type (s). */
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
    gulong closed_handler = 0; // the same
    // Guards the fields above; locked before the registry's, never in a dispatch.
    std::recursive_mutex state_mutex;
    std::vector<Registration> registry;
    std::mutex registry_mutex;
};
