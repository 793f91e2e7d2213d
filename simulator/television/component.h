/** One component of the television: a bus, the screen, the radio module, the NCP host. */
#pragma once

#include "base/bus.h"
#include "base/event_source.h"
#include "base/process.h"

namespace simulator {

class Component {
public:
    /** Called from the main loop when a component that was ready has ended, unless it was asked to. */
    using Ended = std::function<void(const Component&)>;
    /** @param failure why it could not be started; empty: it is ready. */
    using Ready = std::function<void(const std::string& failure)>;

    Component(std::string name, Ended ended) : name_(std::move(name)), ended_(std::move(ended)) {}
    virtual ~Component() = default;
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] virtual bool runs() const = 0;
    /** "runs", "was not started", or how it ended. */
    [[nodiscard]] virtual std::string state() const = 0;
    /** The number of its process; 0 when it has none. */
    [[nodiscard]] virtual int process() const { return 0; }

    /** @param ready called when it is ready, which may be at once. */
    virtual void start(const Ready& ready) = 0;
    /** Kills it while it runs. @param killed called when it has ended. */
    virtual void kill(const std::function<void()>& killed) = 0;
    /** Shuts it down: runs the main loop until it has ended. @return false if it, or a sanitizer in it, found an error. */
    virtual bool end() = 0;

protected:
    void report_end() const { ended_(*this); }

private:
    std::string name_;
    Ended ended_;
};

/** A child process, whose standard error goes to the component's log. It says when it is ready. */
class ProcessComponent : public Component {
public:
    /** @param bus_name it is ready when it owns this name on the bus; empty: with its first line on standard output. */
    ProcessComponent(std::string name, std::vector<std::string> command, GDBusConnection* bus,
                     std::string bus_name, Ended ended);

    [[nodiscard]] bool runs() const override { return process_ && process_->runs(); }
    [[nodiscard]] std::string state() const override;
    [[nodiscard]] int process() const override { return process_ ? process_->number() : 0; }
    /** What it said when it was ready. */
    [[nodiscard]] const std::string& first_line() const { return line_; }

    void start(const Ready& ready) override;
    void kill(const std::function<void()>& killed) override;
    bool end() override;

private:
    void listen(Descriptors& descriptors);
    void read_line();
    void settle(const std::string& failure);
    void handle_end();

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

/** A simulation in this process, and its object on the bus, which says so while it does not run. */
class SimulatedComponent : public Component {
public:
    /** @param die kills it, once the main loop runs again. */
    using Make = std::function<std::unique_ptr<Simulation>(const Action& die)>;

    /** @param interface of its contract. @param make may throw std::runtime_error. */
    SimulatedComponent(std::string name, GDBusConnection* bus, const std::string& interface, Make make,
                       Ended ended);

    [[nodiscard]] bool runs() const override { return simulation_ != nullptr; }
    [[nodiscard]] std::string state() const override { return runs() ? "runs" : state_; }

    void start(const Ready& ready) override;
    void kill(const std::function<void()>& killed) override;
    bool end() override;

private:
    void forward(Call& call);

    Make make_;
    std::unique_ptr<Simulation> simulation_;
    std::map<std::string, Method> methods_;
    std::string state_ = "was not started";
    EventSource killer_;
    BusObject object_;
};

} // namespace simulator
