#include "requirements.h"

#include "files/installed_files.h"
#include "platform/log.h"
#include "theme_checksum.h"
#include "x_server.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <glib.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform {
namespace {

bool is_there(const XConnection& connection) {
    if (connection)
        return true;
    const char* const display = std::getenv("DISPLAY");
    if (display && *display)
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM",
                     "no display: nothing answers at DISPLAY=%s", display);
    else
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no display: DISPLAY is not set");
    return false;
}

/** EFL's reader trusts what it reads, so a theme is known before it is opened. */
bool has_theme() {
    const std::string file = theme_file();
    g_autofree char* contents = nullptr;
    gsize length = 0;
    const char* problem = nullptr;
    if (access(file.c_str(), R_OK) != 0) {
        problem = std::strerror(errno);
    } else if (!g_file_get_contents(file.c_str(), &contents, &length, nullptr)) {
        problem = "it cannot be read";
    } else {
        g_autofree char* checksum =
            g_compute_checksum_for_string(G_CHECKSUM_SHA256, contents, static_cast<gssize>(length));
        if (checksum != std::string_view(theme_sha256))
            problem = "it is spoiled, or not the theme that this program was built with";
    }
    if (problem)
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no theme: %s: %s", file.c_str(),
                     problem);
    return !problem;
}

} // namespace

ApplicationResult check_requirements(const XConnection& display) {
    if (!has_theme())
        return application_theme_missing;
    return is_there(display) ? application_ok : application_display_missing;
}

} // namespace platform
