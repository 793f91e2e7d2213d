#include "display_connection.h"

#include "main_loop.h"
#include "platform/log.h"

#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <cstdlib>

namespace platform {

// Xlib calls the first handler when the connection breaks and the second when the first has returned. Xlib's own second
// handler ends the process; when ours returns, every later call on this display does nothing. Ecore's handlers are not
// used: Elementary replaces them with the first window (measured with EFL 1.26.3).
DisplayConnection::DisplayConnection() : is_open_(ecore_x_init(nullptr) > 0) {
    if (!is_open_) {
        const char* const name = std::getenv("DISPLAY");
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no display: %s%s",
                     name && *name ? "nothing answers at DISPLAY=" : "DISPLAY is not set", name ? name : "");
        return;
    }
    XSetIOErrorHandler([](Display*) {
        quit_main_loop("the display has gone");
        return 0;
    });
    XSetIOErrorExitHandler(
        static_cast<Display*>(ecore_x_display_get()), [](Display*, void*) {}, nullptr);
}

DisplayConnection::~DisplayConnection() {
    if (is_open_)
        ecore_x_shutdown();
}

} // namespace platform
