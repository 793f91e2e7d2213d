/** The radio module's end of its serial line. */
#pragma once

#include "base/file_descriptor.h"

#include <optional>
#include <string>

namespace simulator {

/** A pseudo-terminal whose other end is shown to the television as a serial device. */
class ModulePort {
public:
    /** @throws std::system_error when no pseudo-terminal can be had. */
    explicit ModulePort(std::string device_path);
    ModulePort(const ModulePort&) = delete;
    ModulePort& operator=(const ModulePort&) = delete;
    ~ModulePort();

    /**
     * Makes the device appear, as a symbolic link, or disappear; a program that has it open keeps it.
     * @throws std::system_error.
     */
    void show(bool shown);
    [[nodiscard]] bool is_shown() const { return shown_; }

    /**
     * Holds the television's end open, so that the module's does not hang up while nobody uses it, or lets go
     * of it, so that it does when the television is the last to close it. Held from the start.
     * @throws std::system_error.
     */
    void hold(bool held);

    /** The module's end, to read and write. */
    [[nodiscard]] int descriptor() const { return module_end_.get(); }
    /** The speed the television has set on its end, when it is one a module can have. */
    [[nodiscard]] std::optional<int> speed() const;

private:
    std::string device_path_;
    std::string terminal_path_;
    bool shown_ = false;
    FileDescriptor module_end_;
    FileDescriptor television_end_;
};

} // namespace simulator
