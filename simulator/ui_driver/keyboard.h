/** The X display that the ui_driver looks at and types on. */
#pragma once

#include "base/file_descriptor.h"

#include <chrono>
#include <memory>
#include <string>

struct _XDisplay; // Xlib's own name; its header defines words that others use

namespace simulator {

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
 * @param key an X keysym name, for example "Return", "Left" or "XF86Back", or a key of the remote control:
 * "OK", "Back", "Exit" or "Red". One that the keyboard lacks is pressed as the PC key that stands for it
 * (Escape, F12, F1).
 * @param time it is held down.
 * @throws std::invalid_argument for a key that the keyboard does not have.
 */
void press_key(const Display& display, const std::string& key,
               std::chrono::milliseconds time = std::chrono::milliseconds::zero());

/** Whether `press_key` can press it. */
bool has_key(const Display& display, const std::string& key);

/**
 * Leaves a PNG picture of the whole screen, once two looks at it 100 ms apart show the same, or after two seconds.
 *
 * @throws std::runtime_error when the screen cannot be read or the file not be written.
 */
void take_picture(const Display& display, const std::string& path);

/** The same into an open file, from where it stands. */
void take_picture(const Display& display, const FileDescriptor& file);

} // namespace simulator
