#include "part.h"

#include "common/redirection.h"
#include "logs.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto start_patience = 60s;
constexpr auto end_patience = 5s; // a sanitizer looks for leaks meanwhile

} // namespace

void Part::start() {
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

std::string Part::wait_until_ready() {
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

bool Part::failed() const {
    constexpr int killed = 128; // by a signal
    const int status = process_ ? process_->status().value_or(0) : 0;
    return status > 0 && status < killed;
}

void Part::end() {
    if (!process_)
        return;
    ready_ = false;
    process_->terminate();
    if (!process_->wait_for_end(end_patience))
        process_->send_signal(SIGKILL);
}

void Part::wait_for_end() {
    if (process_)
        (void)process_->wait_for_end(end_patience);
}

} // namespace station
