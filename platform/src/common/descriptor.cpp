#include "descriptor.h"

#include <cerrno>
#include <poll.h>

namespace platform {
namespace {

constexpr int wait_milliseconds = 1000;

bool wait_writable(int descriptor) {
    pollfd wanted{descriptor, POLLOUT, 0};
    return poll(&wanted, 1, wait_milliseconds) > 0;
}

} // namespace

int write_all(int descriptor, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        else if (errno != EINTR && (errno != EAGAIN || !wait_writable(descriptor)))
            return -errno;
    }
    return 0;
}

} // namespace platform
