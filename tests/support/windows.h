/** Windows of other applications, and what others do to the one in front. */
#pragma once

#include "ui_driver/keyboard.h"

namespace simulator {

/** A window that covers the screen and takes the keys, until it is covered or closed at the end of its life. */
class OtherWindow {
public:
    OtherWindow();
    ~OtherWindow();
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;
    OtherWindow(OtherWindow&&) = delete;
    OtherWindow& operator=(OtherWindow&&) = delete;

    /** Whether it is the window that gets the keys. */
    [[nodiscard]] bool has_keys() const;
    /** Takes the keys, once it can be seen, where there is no window manager that gives them. */
    void take_keys() const;

private:
    Display display_;
    unsigned long window_;
};

/** Asks the application of the window that has the keys to close it, as a window manager does. */
void close_front_window(const Display& display);

/** Destroys the window that has the keys, as any client of the display can. */
void destroy_front_window(const Display& display);

} // namespace simulator
