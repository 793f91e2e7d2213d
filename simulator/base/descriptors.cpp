#include "descriptors.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <termios.h>

namespace simulator {
namespace {

/** Binds or connects a new socket. */
FileDescriptor new_socket(int (*join)(int, const sockaddr*, socklen_t), const std::string& path) {
    FileDescriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() < sizeof address.sun_path) // otherwise the address stays empty and the call fails
        path.copy(address.sun_path, path.size());
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how the socket calls take every address
    return join(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
               ? std::move(made)
               : FileDescriptor();
}

} // namespace

void fail_with_errno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

FileDescriptor open_terminal(const std::string& path) {
    FileDescriptor terminal(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    termios settings{};
    if (!terminal || tcgetattr(terminal.get(), &settings) != 0)
        return {};
    cfmakeraw(&settings);
    if (tcsetattr(terminal.get(), TCSANOW, &settings) != 0)
        return {};
    tcflush(terminal.get(), TCIOFLUSH);
    return terminal;
}

FileDescriptor listen_at(const std::string& path, int backlog) {
    unlink(path.c_str());
    auto listener = new_socket(bind, path);
    return listener && listen(listener.get(), backlog) == 0 ? std::move(listener) : FileDescriptor();
}

FileDescriptor connect_to(const std::string& path) { return new_socket(connect, path); }

} // namespace simulator
