/** A window of another application. */
#pragma once

#include "keyboard.h"

namespace simulator {

/** Covers the screen and takes the keys, until it is covered or closed at the end of its life. */
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

} // namespace simulator
