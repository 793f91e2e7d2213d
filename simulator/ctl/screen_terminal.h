/** A new terminal whose screen and keys are those of this process's terminal. */
#pragma once

#include "base/event_source.h"
#include "base/file_descriptor.h"

#include <array>
#include <functional>
#include <termios.h>

namespace simulator {

/** Works in the main loop; this process's terminal is raw as long as it lives. */
class ScreenTerminal {
public:
    /**
     * @param interrupted called when this process is asked to end.
     * @throws Failure when there is no terminal to be had.
     */
    explicit ScreenTerminal(std::function<void()> interrupted);
    ~ScreenTerminal();
    ScreenTerminal(const ScreenTerminal&) = delete;
    ScreenTerminal& operator=(const ScreenTerminal&) = delete;

    /** The side for the command. */
    [[nodiscard]] int inner() const { return inner_.get(); }
    /** Shows what the command wrote last. */
    void show_the_rest();

private:
    void take_size() const;

    FileDescriptor outer_;
    FileDescriptor inner_;
    termios before_{};
    std::function<void()> interrupted_;
    EventSource keys_;
    EventSource output_;
    std::array<guint, 4> signals_{};
};

} // namespace simulator
