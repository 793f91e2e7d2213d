#include "display_connection.h"

#include "main_loop.h"
#include "platform/log.h"

#include <Ecore.h>
#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <cstdlib>

namespace platform {

// When the connection breaks, Xlib calls the I/O error handler, then the exit handler. Xlib's default exit handler ends
// the process; if ours returns, later calls on this display do nothing. The thread that meets the error may be Evas's
// rendering thread, and Xlib keeps the display locked for that thread: unless unlocked, the main thread waits for ever.
// Ecore's handlers do not last: Elementary replaces them when it creates the first window (observed with EFL 1.26.3).
DisplayConnection::DisplayConnection() : is_open_(ecore_x_init(nullptr) > 0) {
    if (!is_open_) {
        const char* const name = std::getenv("DISPLAY");
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no display: %s%s",
                     name && *name ? "cannot connect to DISPLAY=" : "DISPLAY is not set", name ? name : "");
        return;
    }
    XSetIOErrorHandler([](Display*) {
        ecore_main_loop_thread_safe_call_async(
            [](void*) { quit_main_loop("the display connection was lost"); }, nullptr);
        return 0;
    });
    XSetIOErrorExitHandler(
        static_cast<Display*>(ecore_x_display_get()),
        [](Display* display, void*) { XUnlockDisplay(display); }, nullptr);
}

DisplayConnection::~DisplayConnection() {
    if (is_open_)
        ecore_x_shutdown();
}

} // namespace platform
