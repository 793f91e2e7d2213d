/** Serial terminals. */
#pragma once

#include "file_descriptor.h"

#include <optional>
#include <string>

namespace simulator {

/** The speed set on the terminal, 115200 or 921600 bits per second, or nothing when it is neither of the two. */
std::optional<int> speed_of(int terminal);

/**
 * Opens a terminal raw and without making it the controlling one, and drops what waited in it.
 *
 * @param path the device or a link to it.
 * @return the terminal, not blocking; empty with errno set when it cannot be opened or is no terminal.
 */
FileDescriptor open_terminal(const std::string& path);

} // namespace simulator
