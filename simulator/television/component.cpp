#include "component.h"

#include "logs.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr auto start_patience = 60s;
constexpr auto end_patience = 5s; // a sanitizer looks for leaks meanwhile

} // namespace

void Component::start() {
    auto [output, input_end] = make_pipe();
    output_ = std::move(output);
    ready_ = false;
    Descriptors descriptors = written_to(log_path(name_));
    descriptors.input.reset(open("/dev/null", O_RDONLY | O_CLOEXEC));
    descriptors.output = std::move(input_end);
    process_ = std::make_unique<Process>(command_, std::move(descriptors), [this] {
        if (ready_)
            ended_(*this);
    });
}

std::string Component::wait_until_ready() {
    const auto deadline = std::chrono::steady_clock::now() + start_patience;
    std::string line;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd wanted{.fd = output_.get(), .events = POLLIN, .revents = 0};
        char letter = '\0';
        if (left <= 0ms || poll(&wanted, 1, static_cast<int>(left.count())) <= 0 ||
            read(output_.get(), &letter, 1) != 1)
            throw std::runtime_error(name_ + " did not start: " + end_of_log(name_));
        if (letter == '\n')
            break;
        line += letter;
    }
    ready_ = true;
    return line;
}

bool Component::failed() const {
    constexpr int killed = 128; // by a signal
    const int status = process_ ? process_->status().value_or(0) : 0;
    return status > 0 && status < killed;
}

void Component::end() {
    if (!process_)
        return;
    ready_ = false;
    process_->terminate();
    if (!process_->wait_for_end(end_patience))
        process_->send_signal(SIGKILL);
}

void Component::wait_for_end() {
    if (process_)
        (void)process_->wait_for_end(end_patience);
}

} // namespace simulator
