#include "display_loss.h"

#include "main_loop.h"

#include <Ecore_X.h>
#include <X11/Xlib.h>

namespace platform {

// Xlib calls the first handler when the connection breaks and the second when that one has returned. Its own second
// one ends the process; when it returns, every later call on this display does nothing. Handlers of Ecore's would not
// do: Elementary puts its own in their place with the first window (measured with EFL 1.26.3).
void survive_display_loss() {
    auto* const display = static_cast<Display*>(ecore_x_display_get());
    if (!display)
        return;
    XSetIOErrorHandler([](Display*) {
        MainLoop::instance().quit("the display has gone");
        return 0;
    });
    XSetIOErrorExitHandler(
        display, [](Display*, void*) {}, nullptr);
}

} // namespace platform
