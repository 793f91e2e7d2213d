#include "component.h"

#include "base/log.h"

#include <csignal>
#include <fcntl.h>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr guint start_limit_milliseconds = 60'000;
constexpr auto end_patience = 5s; // a sanitizer looks for leaks meanwhile

} // namespace

ProcessComponent::ProcessComponent(std::string name, std::vector<std::string> command, GDBusConnection* bus,
                                   std::string bus_name, Ended ended)
    : Component(std::move(name), std::move(ended)), command_(std::move(command)), bus_(bus),
      bus_name_(std::move(bus_name)) {}

std::string ProcessComponent::state() const { return process_ ? process_->state() : "was not started"; }

void ProcessComponent::start(const Ready& ready) {
    ready_ = ready;
    try {
        Descriptors descriptors = written_to(log_path(name()));
        descriptors.input.reset(open("/dev/null", O_RDONLY | O_CLOEXEC));
        listen(descriptors);
        process_ = std::make_unique<Process>(command_, std::move(descriptors), [this] { handle_end(); });
    } catch (const std::runtime_error& error) {
        return settle(error.what());
    }
    limit_ = call_every(start_limit_milliseconds, [this] { settle(end_of_log(name())); });
}

void ProcessComponent::listen(Descriptors& descriptors) {
    if (!bus_name_.empty()) {
        const auto appeared = +[](GDBusConnection* /*bus*/, const char* /*name*/, const char* /*owner*/,
                                  gpointer self) { static_cast<ProcessComponent*>(self)->settle({}); };
        name_watch_.reset(g_bus_watch_name_on_connection(
            bus_, bus_name_.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, appeared, nullptr, this, nullptr));
        return;
    }
    auto [output, input_end] = make_pipe();
    output_ = std::move(output);
    descriptors.output = std::move(input_end);
    line_.clear();
    reader_ = call_when_readable(output_.get(), [this] { read_line(); });
}

void ProcessComponent::read_line() {
    char letter = '\0';
    if (read(output_.get(), &letter, 1) != 1)
        settle(end_of_log(name()));
    else if (letter == '\n')
        settle({});
    else
        line_ += letter;
}

void ProcessComponent::settle(const std::string& failure) {
    reader_.reset();
    limit_.reset();
    name_watch_.reset();
    if (const Ready ready = std::exchange(ready_, nullptr))
        ready(failure.empty() ? "" : name() + " did not start: " + failure);
}

void ProcessComponent::handle_end() {
    if (ready_)
        settle(end_of_log(name()));
    else if (!is_ending_)
        report_end();
    if (const auto killed = std::exchange(killed_, nullptr))
        killed();
}

void ProcessComponent::kill(const std::function<void()>& killed) {
    killed_ = killed;
    process_->send_signal(SIGKILL);
}

bool ProcessComponent::end() {
    constexpr int killed = 128; // by a signal
    if (!process_)
        return true;
    is_ending_ = true;
    process_->terminate();
    const auto status = process_->wait_for_end(end_patience);
    if (!status)
        process_->send_signal(SIGKILL);
    return status.value_or(0) == 0 || *status >= killed;
}

SimulatedComponent::SimulatedComponent(std::string name, GDBusConnection* bus, const std::string& interface,
                                       Make make, Ended ended)
    : Component(std::move(name), std::move(ended)), make_(std::move(make)),
      object_(bus, interface, every_method(interface, [this](Call& call) { forward(call); })) {}

void SimulatedComponent::forward(Call& call) {
    if (!simulation_)
        throw Refusal("NotRunning",
                      "the " + name() + " " + state_ + "; 'tvctl start " + name() + "' starts it again");
    methods_.at(call.method())(call);
}

void SimulatedComponent::start(const Ready& ready) {
    try {
        simulation_ = make_([this] { killer_ = call_every(0, [this] { kill([] {}); }); });
        methods_ = simulation_->methods();
    } catch (const std::runtime_error& error) {
        return ready(name() + " did not start: " + error.what());
    }
    ready({});
}

void SimulatedComponent::kill(const std::function<void()>& killed) {
    killer_.reset();
    simulation_.reset();
    state_ = "was killed";
    report_end();
    killed();
}

bool SimulatedComponent::end() {
    if (simulation_)
        state_ = "ended with status 0";
    simulation_.reset();
    return true;
}

} // namespace simulator
