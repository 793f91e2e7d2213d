/** What the simulator's services share on the system bus. */
#pragma once

#include "gobject_release.h"

#include <functional>
#include <string>

namespace simulator {

/** Answers one call; owns the invocation and must return a value or an error with it, or drop it unanswered,
 * or throw a Refusal. */
using MethodHandler =
    std::function<void(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation)>;

/** Connects to the system bus. @throws std::runtime_error. */
BusConnection connect_to_system_bus();

/** A connection of its own, whose end does not end the process as that of the system bus may.
 * @throws std::runtime_error. */
BusConnection connect_to_bus(const std::string& address);

/** Takes a name on the bus. @throws std::runtime_error when it cannot be had. */
void own_name(GDBusConnection* connection, const char* name);

/** An object with one interface, there as long as this lives. */
class BusObject {
public:
    /**
     * @param connection      the bus.
     * @param path            the object's path.
     * @param introspection   XML of a node with the one interface; calls that do not fit it never reach the handler.
     * @param handler         answers the calls.
     * @throws std::runtime_error when the object cannot be exported.
     */
    BusObject(GDBusConnection* connection, const char* path, const char* introspection,
              MethodHandler handler);
    BusObject(const BusObject&) = delete;
    BusObject& operator=(const BusObject&) = delete;
    ~BusObject() { g_dbus_connection_unregister_object(connection_, registration_); }

private:
    static void call(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                     gpointer self);

    GDBusConnection* connection_;
    MethodHandler handler_;
    guint registration_ = 0;
};

} // namespace simulator
