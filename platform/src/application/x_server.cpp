#include "x_server.h"

#include <Ecore_X.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <array>
#include <cstddef>

namespace platform {
namespace {

Display* x_display() { return static_cast<Display*>(ecore_x_display_get()); }

} // namespace

XConnection::XConnection() : open_(ecore_x_init(nullptr) > 0) {}

XConnection::~XConnection() {
    if (open_)
        ecore_x_shutdown();
}

// A property's change is reported with the server's time; one of a window that Ecore does not know is waited
// for, and everything else that comes meanwhile stays in Xlib's queue for Ecore.
std::optional<unsigned> x_server_time() {
    Display* const display = x_display();
    if (!display)
        return std::nullopt;
    const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, 0, 0);
    XSelectInput(display, window, PropertyChangeMask);
    XChangeProperty(display, window, XA_WM_NAME, XA_STRING, 8, PropModeAppend, nullptr, 0);
    XEvent change{};
    XWindowEvent(display, window, PropertyChangeMask, &change);
    XDestroyWindow(display, window);
    XFlush(display);
    return static_cast<unsigned>(change.xproperty.time);
}

std::bitset<256> x_keys_down() {
    std::bitset<256> down;
    std::array<char, 32> bytes{};
    if (Display* const display = x_display())
        XQueryKeymap(display, bytes.data());
    for (std::size_t code = 0; code < down.size(); ++code)
        down[code] = (static_cast<unsigned char>(bytes[code / 8]) >> (code % 8) & 1U) != 0;
    return down;
}

} // namespace platform
