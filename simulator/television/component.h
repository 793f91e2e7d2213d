/** A program that makes up the television: a bus, the screen, the radio module, the NCP host. */
#pragma once

#include "base/process.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace simulator {

/** Its standard error goes to /var/log/simulator/NAME.log; on standard output it says one line when it is
 * ready. */
class Component {
public:
    /** Called from the main loop when the component ends after it was ready. */
    using Ended = std::function<void(const Component&)>;

    Component(std::string name, std::vector<std::string> command, Ended ended)
        : name_(std::move(name)), command_(std::move(command)), ended_(std::move(ended)) {}

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] bool runs() const { return process_ && process_->runs(); }
    [[nodiscard]] int process() const { return process_ ? process_->number() : 0; }
    /** See `Process::state`; "was not started" before. */
    [[nodiscard]] std::string state() const { return process_ ? process_->state() : "was not started"; }
    /** It has ended with another status than 0: it, or a sanitizer in it, found something wrong. */
    [[nodiscard]] bool failed() const;

    /** @throws std::runtime_error when it cannot be started. */
    void start();
    /**
     * Waits for its word that it is ready.
     *
     * @return that line.
     * @throws std::runtime_error with the end of its log when it does not come.
     */
    std::string wait_until_ready();
    /** Asks it to end (SIGTERM), and kills it when it does not. */
    void end();
    /** Waits for its end, which is under way. */
    void wait_for_end();

private:
    std::string name_;
    std::vector<std::string> command_;
    Ended ended_;
    std::unique_ptr<Process> process_;
    FileDescriptor output_;
    bool ready_ = false;
};

} // namespace simulator
