/** Presses keys on the X display. */
#pragma once

#include <chrono>
#include <memory>
#include <string>

struct _XDisplay; // Xlib's name; Xlib.h defines macros that clash with other names

namespace simulator {

struct CloseDisplay {
    void operator()(_XDisplay* display) const;
};
using Display = std::unique_ptr<_XDisplay, CloseDisplay>;

/** Opens the display of the environment variable DISPLAY. @throws std::runtime_error if that fails. */
Display open_display();

/**
 * Presses (down) or releases a key (XTEST).
 *
 * @param key an X keysym name, for example "Return", "Left" or "XF86Back", or a key of the remote control: "OK",
 *            "Back", "Exit" or "Red". If the keyboard lacks it, its PC key is pressed instead
 *            (Escape, F12, F1). Does nothing if `has_key` returns false.
 */
void move_key(const Display& display, const std::string& key, bool down);

/** Presses a key, blocks while it is held down, and releases it. */
void press_key(const Display& display, const std::string& key,
               std::chrono::milliseconds time = std::chrono::milliseconds::zero());

/** Whether the keyboard has this key. */
bool has_key(const Display& display, const std::string& key);

} // namespace simulator
