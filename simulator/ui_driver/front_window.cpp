#include "front_window.h"

#include <X11/Xlib.h>

namespace simulator {
namespace {

Window front_window(const Display& display) {
    Window front = None;
    int revert_to = 0;
    XGetInputFocus(display.get(), &front, &revert_to);
    return front;
}

} // namespace

void close_front_window(const Display& display) {
    XEvent request{};
    request.xclient.type = ClientMessage;
    request.xclient.window = front_window(display);
    request.xclient.message_type = XInternAtom(display.get(), "_NET_CLOSE_WINDOW", False);
    request.xclient.format = 32;
    XSendEvent(display.get(), DefaultRootWindow(display.get()), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &request);
    XSync(display.get(), False);
}

void destroy_front_window(const Display& display) {
    XDestroyWindow(display.get(), front_window(display));
    XSync(display.get(), False);
}

} // namespace simulator
