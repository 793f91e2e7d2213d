#include "session_bus.h"

#include "platform/log.h"
#include "time_limit.h"

#include <cstdlib>

namespace platform {
namespace {

bool has_session_bus() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || !*runtime)
        return false;
    g_autofree char* socket = g_build_filename(runtime, "bus", nullptr);
    return g_file_test(socket, G_FILE_TEST_EXISTS);
}

} // namespace

ObjectPointer<GDBusConnection> connect_to_session_bus() {
    if (!has_session_bus())
        return nullptr;
    const TimeLimit limit(session_bus_limit);
    g_autoptr(GError) error = nullptr;
    ObjectPointer<GDBusConnection> connection(
        g_bus_get_sync(G_BUS_TYPE_SESSION, limit.cancellable(), &error));
    if (connection)
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    else
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no session bus: %s", error->message);
    return connection;
}

} // namespace platform
