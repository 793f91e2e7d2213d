#include "other_window.h"

#include <X11/Xlib.h>
#include <thread>

namespace simulator {

OtherWindow::OtherWindow()
    : display_(open_display()), window_(XCreateSimpleWindow(display_.get(), DefaultRootWindow(display_.get()),
                                                            0, 0, 320, 180, 0, 0, 0)) {
    XMapRaised(display_.get(), window_);
    XFlush(display_.get());
}

OtherWindow::~OtherWindow() { XDestroyWindow(display_.get(), window_); }

bool OtherWindow::has_keys() const {
    Window focused = None;
    int revert_to = 0;
    XGetInputFocus(display_.get(), &focused, &revert_to);
    return focused == window_;
}

void OtherWindow::take_keys() const {
    XWindowAttributes attributes{};
    while (XGetWindowAttributes(display_.get(), window_, &attributes) != 0 &&
           attributes.map_state != IsViewable)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    XSetInputFocus(display_.get(), window_, RevertToParent, CurrentTime);
    XSync(display_.get(), False);
}

} // namespace simulator
