#include "relay.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

namespace simulator {
namespace {

constexpr int longest_wait_milliseconds = 1000;

void write_all(int to, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = write(to, bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        if (errno != EAGAIN && errno != EINTR)
            return;
        pollfd space{to, POLLOUT, 0};
        if (poll(&space, 1, longest_wait_milliseconds) <= 0)
            return;
    }
}

} // namespace

Passed pass_on(int from, int to) {
    std::array<char, 4096> bytes{};
    const auto count = read(from, bytes.data(), bytes.size());
    if (count > 0) {
        if (to >= 0)
            write_all(to, {bytes.data(), static_cast<std::size_t>(count)});
        return Passed::some;
    }
    return count < 0 && (errno == EAGAIN || errno == EINTR) ? Passed::some : Passed::closed;
}

std::string socket_path(const std::string& instance) { return "/run/cpcd/" + instance + ".sock"; }

} // namespace simulator
