#include "requirements.h"

#include "common/installed_files.h"
#include "platform/log.h"
#include "x_server.h"

#include <Edje.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
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

bool has_theme() {
    const std::string file = theme_file();
    if (edje_file_group_exists(file.c_str(), "vell/focus_ring") != EINA_FALSE)
        return true;
    __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no theme: %s: %s", file.c_str(),
                 access(file.c_str(), R_OK) == 0 ? "it is damaged, or another file" : std::strerror(errno));
    return false;
}

} // namespace

ApplicationResult check_requirements(const XConnection& display) {
    if (!has_theme())
        return application_theme_missing;
    return is_there(display) ? application_ok : application_display_missing;
}

} // namespace platform
