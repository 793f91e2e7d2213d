#include "regular_file.h"

#include "descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>

namespace platform {

std::optional<std::string> read_regular_file(int folder, const char* path, int flags) {
    const Descriptor file(openat(folder, path, flags | O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.st_mode) || static_cast<std::size_t>(status.st_size) > largest_file) {
        errno = S_ISREG(status.st_mode) ? EFBIG : EINVAL;
        return std::nullopt;
    }
    const std::string opened = "/proc/self/fd/" + std::to_string(file.get());
    g_autofree char* bytes = nullptr;
    gsize size = 0;
    if (!g_file_get_contents(opened.c_str(), &bytes, &size, nullptr)) {
        errno = errno == ENOENT ? EIO : errno; // /proc is missing, not the file
        return std::nullopt;
    }
    return std::string(bytes, size);
}

} // namespace platform
