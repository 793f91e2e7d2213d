#include "terminal.h"

#include <fcntl.h>
#include <termios.h>

namespace simulator {

std::optional<int> speed_of(int terminal) {
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0)
        return std::nullopt;
    const speed_t speed = cfgetospeed(&settings);
    return speed == B115200 ? std::optional(115200) : speed == B921600 ? std::optional(921600) : std::nullopt;
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

} // namespace simulator
