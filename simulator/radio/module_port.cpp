#include "module_port.h"

#include "base/terminal.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <pty.h>
#include <system_error>

namespace simulator {
namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

ModulePort::ModulePort(std::string device_path) : device_path_(std::move(device_path)) {
    int module = -1;
    int television = -1;
    std::array<char, 64> path{};
    if (openpty(&module, &television, path.data(), nullptr, nullptr) != 0)
        fail("no pseudo-terminal");
    close(television); // it is opened raw
    module_end_.reset(module);
    terminal_path_ = path.data();
    television_end_ = open_terminal(terminal_path_);
    if (!television_end_ || fcntl(module, F_SETFL, O_NONBLOCK) != 0 ||
        fcntl(module, F_SETFD, FD_CLOEXEC) != 0)
        fail(terminal_path_);
}

ModulePort::~ModulePort() {
    if (shown_)
        unlink(device_path_.c_str());
}

void ModulePort::show(bool shown) {
    std::error_code error;
    if (std::filesystem::is_symlink(device_path_, error)) // also that of a module that was killed
        unlink(device_path_.c_str());
    if (shown && symlink(terminal_path_.c_str(), device_path_.c_str()) != 0)
        fail(device_path_);
    shown_ = shown;
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
