#include "windows.h"

#include <X11/Xlib.h>
#include <thread>

namespace simulator {
namespace {

Window front_window(const Display& display) {
    Window front = None;
    int revert_to = 0;
    XGetInputFocus(display.get(), &front, &revert_to);
    return front;
}

} // namespace

OtherWindow::OtherWindow()
    : window_(
          XCreateSimpleWindow(display_.get(), DefaultRootWindow(display_.get()), 0, 0, 320, 180, 0, 0, 0)) {
    XMapRaised(display_.get(), window_);
    XFlush(display_.get());
}

bool OtherWindow::has_keys() const { return front_window(display_) == window_; }

void OtherWindow::take_keys() const {
    XWindowAttributes attributes{};
    while (XGetWindowAttributes(display_.get(), window_, &attributes) != 0 &&
           attributes.map_state != IsViewable)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    XSetInputFocus(display_.get(), window_, RevertToParent, CurrentTime);
    XSync(display_.get(), False);
}

void close_front_window(const Display& display) {
    XEvent request{};
    request.xclient.type = ClientMessage;
    request.xclient.window = front_window(display);
    request.xclient.message_type = XInternAtom(display.get(), "WM_PROTOCOLS", False);
    request.xclient.format = 32;
    request.xclient.data.l[0] = static_cast<long>(XInternAtom(display.get(), "WM_DELETE_WINDOW", False));
    request.xclient.data.l[1] = CurrentTime;
    XSendEvent(display.get(), request.xclient.window, False, NoEventMask, &request);
    XSync(display.get(), False);
}

void destroy_front_window(const Display& display) {
    XDestroyWindow(display.get(), front_window(display));
    XSync(display.get(), False);
}

} // namespace simulator
