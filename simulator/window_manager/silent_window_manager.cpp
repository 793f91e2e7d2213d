#include "silent_window_manager.h"

namespace simulator {

SilentWindowManager::SilentWindowManager(Display* display) : display_(display) {
    XSelectInput(display_, DefaultRootWindow(display_), SubstructureRedirectMask);
    XSync(display_, False);
}

void SilentWindowManager::handle(const XEvent& event) const {
    if (event.type == MapRequest)
        XMapWindow(display_, event.xmaprequest.window);
    if (event.type != ConfigureRequest)
        return;
    const XConfigureRequestEvent& request = event.xconfigurerequest;
    if ((request.value_mask & CWStackMode) != 0)
        XRaiseWindow(display_, request.window);
    else
        XMoveResizeWindow(display_, request.window, request.x, request.y,
                          static_cast<unsigned>(request.width), static_cast<unsigned>(request.height));
}

} // namespace simulator
