/** Components of the television, for example a bus, the screen or the radio module. */
#pragma once

#include "base/bus.h"
#include "base/event_source.h"
#include "base/log.h"
#include "base/process.h"

#include <fcntl.h>

namespace simulator {

class Component {
public:
    /** @param failure why it could not be started; empty on success. */
    using Ready = std::function<void(const std::string& failure)>;

    explicit Component(std::string name) : name_(std::move(name)) {}
    virtual ~Component() = default;
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] virtual bool runs() const = 0;
    /** "runs", "was not started", or how it ended. */
    [[nodiscard]] virtual std::string state() const = 0;
    /** Its process ID; 0 if it has no process. */
    [[nodiscard]] virtual int process() const { return 0; }

    /** @param ready called when it is ready or cannot be started, possibly before `start` returns. */
    virtual void start(const Ready& ready) = 0;
    /** Kills it; it must be running. @param killed called when it has exited. */
    virtual void kill(const std::function<void()>& killed) = 0;
    /** Shuts it down, running the main loop meanwhile. @return false if it or its sanitizer reports an error. */
    virtual bool end() = 0;

    /** Called from the main loop if a component that was ready exits without a call of `end`. */
    std::function<void(const Component&)> on_end;

private:
    std::string name_;
};

/** A child process, whose standard error goes to the component's log. */
class ProcessComponent : public Component {
public:
    /** @param bus_name the process is ready when it owns this bus name; if empty, when it prints its first line. */
    ProcessComponent(std::string name, std::vector<std::string> command, GDBusConnection* bus,
                     std::string bus_name)
        : Component(std::move(name)), command_(std::move(command)), bus_(bus),
          bus_name_(std::move(bus_name)) {}

    [[nodiscard]] bool runs() const override { return process_ && process_->runs(); }
    [[nodiscard]] std::string state() const override {
        return process_ ? process_->state() : "was not started";
    }
    [[nodiscard]] int process() const override { return process_ ? process_->id() : 0; }
    /** The line that it printed when it was ready. */
    [[nodiscard]] const std::string& first_line() const { return line_; }

    void start(const Ready& ready) override {
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
    void kill(const std::function<void()>& killed) override {
        killed_ = killed;
        process_->send_signal(SIGKILL);
    }
    bool end() override {
        constexpr int killed = 128; // by a signal
        if (!process_)
            return true;
        is_ending_ = true;
        process_->terminate();
        const auto status = process_->wait_for_end(shutdown_limit);
        if (!status)
            process_->send_signal(SIGKILL);
        return status.value_or(0) == 0 || *status >= killed;
    }

private:
    static constexpr guint start_limit_milliseconds = 60'000;
    static constexpr std::chrono::seconds shutdown_limit{5}; // leak checking takes time

    void listen(Descriptors& descriptors) {
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
    void read_line() {
        char letter = '\0';
        if (read(output_.get(), &letter, 1) != 1)
            settle(end_of_log(name()));
        else if (letter == '\n')
            settle({});
        else
            line_ += letter;
    }
    void settle(const std::string& failure) {
        reader_.reset();
        limit_.reset();
        name_watch_.reset();
        if (const Ready ready = std::exchange(ready_, nullptr))
            ready(failure.empty() ? "" : name() + " did not start: " + failure);
    }
    void handle_end() {
        if (ready_)
            settle(end_of_log(name()));
        else if (!is_ending_)
            on_end(*this);
        if (const auto killed = std::exchange(killed_, nullptr))
            killed();
    }

    std::vector<std::string> command_;
    GDBusConnection* bus_;
    std::string bus_name_;
    std::unique_ptr<Process> process_;
    FileDescriptor output_;
    std::string line_;
    EventSource reader_;
    NameWatch name_watch_;
    EventSource limit_;
    Ready ready_; // while it starts
    std::function<void()> killed_;
    bool is_ending_ = false;
};

/** A simulation in this process, and its bus object, which refuses calls while the simulation is not running. */
class SimulatedComponent : public Component {
public:
    /** @param die returns at once; the main loop then kills the simulation. */
    using Make = std::function<std::unique_ptr<Simulation>(const Action& die)>;

    /** @param interface of its bus object. @param make may throw std::runtime_error. */
    SimulatedComponent(std::string name, GDBusConnection* bus, const std::string& interface, Make make)
        : Component(std::move(name)), make_(std::move(make)),
          object_(bus, interface, every_method(interface, [this](Call& call) { forward(call); })) {}

    [[nodiscard]] bool runs() const override { return simulation_ != nullptr; }
    [[nodiscard]] std::string state() const override { return runs() ? "runs" : state_; }

    void start(const Ready& ready) override {
        try {
            simulation_ = make_([this] { killer_ = call_every(0, [this] { kill([] {}); }); });
            methods_ = simulation_->methods();
        } catch (const std::runtime_error& error) {
            return ready(name() + " did not start: " + error.what());
        }
        ready({});
    }
    void kill(const std::function<void()>& killed) override {
        killer_.reset();
        simulation_.reset();
        state_ = "was killed";
        on_end(*this);
        killed();
    }
    bool end() override {
        if (simulation_)
            state_ = "ended with status 0";
        simulation_.reset();
        return true;
    }

private:
    void forward(Call& call) {
        if (!simulation_)
            throw Refusal("NotRunning",
                          "the " + name() + " " + state_ + "; restart it with 'tvctl start " + name() + "'");
        methods_.at(call.method())(call);
    }

    Make make_;
    std::unique_ptr<Simulation> simulation_;
    std::map<std::string, Method> methods_;
    std::string state_ = "was not started";
    EventSource killer_;
    BusObject object_;
};

} // namespace simulator
