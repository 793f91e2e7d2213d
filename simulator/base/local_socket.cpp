#include "local_socket.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

namespace simulator {
namespace {

/** The address of a socket path, or a path that is too long as an empty address. */
sockaddr_un address_of(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() < sizeof address.sun_path)
        std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

/** Binds or connects a new socket, which is empty with errno set when that fails. */
FileDescriptor new_socket(int (*join)(int, const sockaddr*, socklen_t), const std::string& path) {
    FileDescriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto address = address_of(path);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how the socket calls take every address
    if (join(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    return made;
}

} // namespace

FileDescriptor listen_at(const std::string& path, int backlog) {
    unlink(path.c_str());
    auto listener = new_socket(bind, path);
    if (listener && listen(listener.get(), backlog) != 0)
        return {};
    return listener;
}

FileDescriptor connect_to(const std::string& path) { return new_socket(connect, path); }

} // namespace simulator
