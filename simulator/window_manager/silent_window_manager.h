/** A window manager that does as little as one can. */
#pragma once

#include <X11/Xlib.h>

namespace simulator {

/**
 * Lets windows appear, move and restack, and does nothing else: it neither announces itself nor writes on windows
 * nor gives the keyboard.
 */
class SilentWindowManager {
public:
    explicit SilentWindowManager(Display* display);

    /** Handles one event. */
    void handle(const XEvent& event) const;

private:
    Display* display_;
};

} // namespace simulator
