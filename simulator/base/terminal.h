/** Serial terminals: opening them raw, and the two speeds of the radio module. */
#pragma once

#include "file_descriptor.h"

#include <optional>
#include <string>

namespace simulator {

/** Sets the terminal raw: no echo, no translation, one byte at a time. @return false with errno set. */
bool make_raw(int terminal);

/** Sets both directions to 115200 or 921600 bits per second. @return false with errno set; EINVAL: another
 * speed. */
bool set_speed(int terminal, int bits_per_second);

/** The speed set on the terminal in bits per second, or nothing when it is neither of the two. */
std::optional<int> speed_of(int terminal);

/**
 * Opens a terminal raw and without making it the controlling one, and drops what waited in it.
 *
 * @param path  the device or a link to it.
 * @param speed bits per second to set, or nothing to leave the speed alone.
 * @return the terminal, not blocking; empty with errno set when it cannot be opened or is no terminal.
 */
FileDescriptor open_terminal(const std::string& path, std::optional<int> speed = std::nullopt);

} // namespace simulator
