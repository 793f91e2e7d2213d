/** Reading regular files. */
#pragma once

#include <optional>
#include <string>

namespace platform {

/** The size limit of `read_regular_file`, in bytes. */
constexpr std::size_t largest_file = 16UL * 1024 * 1024;

/**
 * Reads a whole regular file. Unlike GLib, does not block on a named pipe.
 *
 * @param folder an open folder, or AT_FDCWD.
 * @param path   the file's path, relative to `folder`.
 * @param flags  additional flags for open(2).
 * @return the content; nothing on failure, with errno set: EINVAL if it is not a regular file, EFBIG if it is too
 *         large, ENOENT only if it is missing.
 */
std::optional<std::string> read_regular_file(int folder, const char* path, int flags = 0);

} // namespace platform
