#include "session_bus.h"

#include <cstdlib>
#include <glib.h>

namespace platform {

bool has_session_bus() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || !*runtime)
        return false;
    g_autofree char* socket = g_build_filename(runtime, "bus", nullptr);
    return g_file_test(socket, G_FILE_TEST_EXISTS);
}

} // namespace platform
