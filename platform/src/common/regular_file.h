/** Reading regular files. */
#pragma once

#include <optional>
#include <string>

namespace platform {

/**
 * Reads a whole regular file. Unlike GLib, does not block on a named pipe.
 *
 * @param folder an open folder, or AT_FDCWD.
 * @param path   the file's path, relative to `folder`.
 * @param flags  further flags of open(2).
 * @return its bytes; nothing, and errno, when it cannot be read (EINVAL for another kind of file).
 */
std::optional<std::string> read_regular_file(int folder, const char* path, int flags = 0);

} // namespace platform
