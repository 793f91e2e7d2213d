#include "module_port.h"

#include "base/terminal.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace simulator {
namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

ModulePort::ModulePort(std::string device_path)
    : device_path_(std::move(device_path)), module_end_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    std::array<char, 64> path{};
    if (!module_end_ || grantpt(descriptor()) != 0 || unlockpt(descriptor()) != 0 ||
        ptsname_r(descriptor(), path.data(), path.size()) != 0) {
        fail("no pseudo-terminal");
    }
    if (fcntl(descriptor(), F_SETFL, O_NONBLOCK) != 0)
        fail("no pseudo-terminal");
    terminal_path_ = path.data();
    television_end_ = open_terminal(terminal_path_);
    if (!television_end_)
        fail(terminal_path_);
}

void ModulePort::show() {
    if (shown_)
        return;
    std::error_code error;
    if (std::filesystem::is_symlink(device_path_, error))
        unlink(device_path_.c_str()); // of a module that was killed
    if (symlink(terminal_path_.c_str(), device_path_.c_str()) != 0)
        fail(device_path_);
    shown_ = true;
}

void ModulePort::hide() {
    if (shown_)
        unlink(device_path_.c_str());
    shown_ = false;
}

void ModulePort::hold(bool held) {
    if (held == static_cast<bool>(television_end_))
        return;
    television_end_.reset(held ? open(terminal_path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC) : -1);
    if (held && !television_end_)
        fail(terminal_path_);
}

std::optional<int> ModulePort::speed() const { return speed_of(descriptor()); }

} // namespace simulator
