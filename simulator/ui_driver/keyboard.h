/** The keys of the X display, pressed as a hand on the remote control does. */
#pragma once

#include <chrono>
#include <memory>
#include <string>

struct _XDisplay; // Xlib's own name; its header defines words that others use

namespace simulator {

struct CloseDisplay {
    void operator()(_XDisplay* display) const;
};
using Display = std::unique_ptr<_XDisplay, CloseDisplay>;

/** Opens the display of the environment variable DISPLAY. @throws std::runtime_error when there is none. */
Display open_display();

/**
 * Presses (down) or releases a key (XTEST).
 *
 * @param key an X keysym name, for example "Return", "Left" or "XF86Back", or a key of the remote control: "OK",
 *            "Back", "Exit" or "Red". One that the keyboard lacks is pressed as the PC key that stands for it (Escape,
 *            F12, F1). Does nothing for a key that `has_key` does not know.
 */
void move_key(const Display& display, const std::string& key, bool down);

/** Presses a key, holds it down for a time, in which it waits, and releases it. */
void press_key(const Display& display, const std::string& key,
               std::chrono::milliseconds time = std::chrono::milliseconds::zero());

/** Whether `press_key` can press it. */
bool has_key(const Display& display, const std::string& key);

} // namespace simulator
