#include "relay.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace station {
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

/** The address of a socket path, or a path that is too long as an empty address. */
sockaddr_un address_of(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() < sizeof address.sun_path)
        std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

FileDescriptor new_socket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
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

FileDescriptor listen_at(const std::string& path) {
    auto listener = new_socket();
    const auto address = address_of(path);
    unlink(path.c_str());
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how the socket calls take every address
    const auto* any_address = reinterpret_cast<const sockaddr*>(&address);
    if (bind(listener.get(), any_address, sizeof address) != 0 || listen(listener.get(), 1) != 0)
        return {};
    return listener;
}

FileDescriptor connect_to(const std::string& path) {
    auto connection = new_socket();
    const auto address = address_of(path);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how the socket calls take every address
    const auto* any_address = reinterpret_cast<const sockaddr*>(&address);
    if (connect(connection.get(), any_address, sizeof address) != 0)
        return {};
    return connection;
}

} // namespace station
