/** The X display that the operator looks at and types on. */
#pragma once

#include <memory>
#include <string>

struct _XDisplay; // Xlib's own name; its header defines words that others use

namespace station {

struct CloseDisplay {
    void operator()(_XDisplay* display) const;
};
using Display = std::unique_ptr<_XDisplay, CloseDisplay>;

/**
 * Opens the display of the environment variable DISPLAY.
 *
 * @throws std::runtime_error when there is none.
 */
Display open_display();

/**
 * Presses and releases a key, as a hand on the keyboard does (XTEST).
 *
 * @param key an X keysym name, for example "Return", "Left" or "XF86Back"; a remote control's key that the
 * keyboard lacks (XF86Back, XF86Exit, XF86Red) is pressed as the PC key that stands for it (Escape, F12, F1).
 * @throws std::invalid_argument for a key that the keyboard does not have.
 */
void press_key(const Display& display, const std::string& key);

/**
 * Leaves a PNG picture of the whole screen, once two looks at it 100 ms apart show the same, or after two
 * seconds.
 *
 * @throws std::runtime_error when the screen cannot be read or the file not be written.
 */
void take_picture(const Display& display, const std::string& path);

} // namespace station
