/** Windows of other applications, and actions of other clients on the front window. */
#pragma once

#include "ui_driver/keyboard.h"

namespace simulator {

/** A window of another client while this object exists; a window manager gives it the screen and the keyboard. */
class OtherWindow {
public:
    OtherWindow();

    /** Whether it has the keyboard. */
    [[nodiscard]] bool has_keys() const;
    /** Waits until the window is visible, and takes the keyboard; needed only if there is no window manager. */
    void take_keys() const;

private:
    Display display_ = open_display();
    unsigned long window_;
};

/** Asks the focused window to close, as a window manager does. */
void close_front_window(const Display& display);

/** Destroys the focused window, as any X client can. */
void destroy_front_window(const Display& display);

} // namespace simulator
