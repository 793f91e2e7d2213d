#pragma once

#include "model/dbus_client.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

/**
 * An NCP host service on the system bus that answers as it is told, on a connection of its own. It answers
 * while the test's thread is blocked in a call.
 */
class ScriptedService {
public:
    static constexpr const char* bus_name = "org.orvane.qm_ncp_host";
    static constexpr const char* object_path = "/org/orvane/qm_ncp_host";
    static constexpr const char* interface = "org.orvane.qm_ncp_host.service";

    ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;
    ~ScriptedService();

    /** Answers a method with a value in GVariant text, for example "('12 packets', 0)"; others are unknown.
     */
    void answer(const std::string& method, const std::string& reply);
    /** Answers a method with a D-Bus error. */
    void refuse(const std::string& method, const std::string& error_name);
    /** Leaves the bus in the middle of a method's call. */
    void vanish_in(const std::string& method);

    /** The calls so far with their arguments: "ember_set_channel (11,)". */
    [[nodiscard]] std::vector<std::string> calls();

    /** Emits a signal of the service and returns when it was dispatched on this thread, to whoever listens.
     */
    void emit(const std::string& signal, const std::string& arguments);

private:
    struct Script {
        enum class Kind { reply, error, vanish } kind;
        std::string text;
    };
    static GDBusMessage* filter(GDBusConnection* connection, GDBusMessage* message, gboolean incoming,
                                gpointer self);
    bool handle(GDBusMessage* call);

    std::mutex mutex;
    std::map<std::string, Script> scripts;
    std::vector<std::string> received;
    GObjectHandle<GDBusConnection> connection;
    guint filter_id = 0;
};

/** Drops the process's shared system bus connection, so that the next one is made with the present address.
 */
void forget_system_bus();
