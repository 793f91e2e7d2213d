#include "session_bus.h"

#include <glib.h>

namespace platform {

bool has_session_bus() {
    g_autofree char* socket = g_build_filename(g_get_user_runtime_dir(), "bus", nullptr);
    return g_getenv("DBUS_SESSION_BUS_ADDRESS") || g_file_test(socket, G_FILE_TEST_EXISTS);
}

} // namespace platform
