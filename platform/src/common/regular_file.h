/** Reading regular files. */
#pragma once

#include <optional>
#include <string>

namespace platform {

/** Bytes that `read_regular_file` reads at most. */
constexpr std::size_t largest_file = 16UL * 1024 * 1024;

/**
 * Reads a whole regular file. Does not block on a named pipe, as GLib would.
 *
 * @param folder an open folder, or AT_FDCWD.
 * @param path   the file, from there.
 * @param flags  further flags of open(2).
 * @return its bytes; nothing, and errno, when it cannot be read (EINVAL for another kind of file, EFBIG
 *         for a larger one, ENOENT only when it is missing).
 */
std::optional<std::string> read_regular_file(int folder, const char* path, int flags = 0);

} // namespace platform
