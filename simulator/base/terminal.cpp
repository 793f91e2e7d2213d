#include "terminal.h"

#include <fcntl.h>
#include <termios.h>

#include <array>
#include <cerrno>

namespace simulator {
namespace {

struct Speed {
    int bits_per_second;
    speed_t code;
};
constexpr std::array speeds{Speed{115200, B115200}, Speed{921600, B921600}};

} // namespace

bool make_raw(int terminal) {
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0)
        return false;
    cfmakeraw(&settings);
    return tcsetattr(terminal, TCSANOW, &settings) == 0;
}

bool set_speed(int terminal, int bits_per_second) {
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0)
        return false;
    for (const auto& speed : speeds) {
        if (speed.bits_per_second != bits_per_second)
            continue;
        cfsetispeed(&settings, speed.code);
        cfsetospeed(&settings, speed.code);
        return tcsetattr(terminal, TCSANOW, &settings) == 0;
    }
    errno = EINVAL;
    return false;
}

std::optional<int> speed_of(int terminal) {
    termios settings{};
    if (tcgetattr(terminal, &settings) != 0)
        return std::nullopt;
    for (const auto& speed : speeds) {
        if (speed.code == cfgetospeed(&settings))
            return speed.bits_per_second;
    }
    return std::nullopt;
}

FileDescriptor open_terminal(const std::string& path, std::optional<int> speed) {
    FileDescriptor terminal(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    if (!terminal || !make_raw(terminal.get()))
        return {};
    if (speed && !set_speed(terminal.get(), *speed))
        return {};
    tcflush(terminal.get(), TCIOFLUSH);
    return terminal;
}

} // namespace simulator
