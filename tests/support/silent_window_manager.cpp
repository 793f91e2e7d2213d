/**
 * A minimal window manager: it maps, moves and restacks windows, but does not announce itself, set window properties or
 * move the keyboard focus.
 */
#include <X11/Xlib.h>

#include <cstdio>

int main() {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return 1;
    XSelectInput(display, DefaultRootWindow(display), SubstructureRedirectMask);
    XSync(display, False);
    std::puts("ready");
    std::fflush(stdout);
    for (XEvent event{};;) {
        XNextEvent(display, &event);
        if (event.type == MapRequest)
            XMapWindow(display, event.xmaprequest.window);
        if (event.type != ConfigureRequest)
            continue;
        const XConfigureRequestEvent& request = event.xconfigurerequest;
        if ((request.value_mask & CWStackMode) != 0)
            XRaiseWindow(display, request.window);
        else
            XMoveResizeWindow(display, request.window, request.x, request.y,
                              static_cast<unsigned>(request.width), static_cast<unsigned>(request.height));
    }
}
