/** The whole television: its components and the command that runs in it. */
#pragma once

#include "base/event_source.h"
#include "base/log.h"
#include "base/options.h"
#include "component.h"

#include <list>

namespace simulator {

/**
 * Starts the components, then the command. Shuts the components down in reverse order when the command exits or
 * `end` is called.
 *
 * A component that exits unexpectedly is reported on standard error and in television.log, and can be restarted.
 */
class Television {
public:
    /**
     * @param options  see the help of simulator/tv; must outlive the television.
     * @param programs the folder of the simulator's programs.
     */
    Television(const Options& options, std::string programs);

    /**
     * Runs the television until the command exits.
     *
     * @return the command's status as a shell reports it; 1 instead of 0 if a component failed during
     *         shutdown and none had exited earlier.
     * @throws std::runtime_error if a component cannot be started.
     */
    int run();
    /** Asks the command to shut down cleanly; kills it after ten seconds. */
    void end();

private:
    /** A command that an outside caller runs in the television. */
    struct Running {
        std::unique_ptr<Process> process;
        NameWatch caller;
    };

    void start(std::unique_ptr<Component> component);
    const ProcessComponent& start_process(const std::string& name, std::vector<std::string> command,
                                          const std::string& bus_name = {});
    void start_simulation(const std::string& name, const std::string& interface,
                          SimulatedComponent::Make make);
    /** Exports the bus object of a component that is missing or not simulated; it refuses all calls. */
    void refuse_all(const std::string& interface, const Refusal& refusal);
    void start_ncp_host(const std::string& interface);
    void start_components();
    void wait_until_ready();
    /** Null if there is no such component. */
    [[nodiscard]] Component* find_component(const std::string& name) const;
    [[nodiscard]] GDBusConnection* bus() const { return bus_.get(); }
    /** A floating aa{sv}. */
    [[nodiscard]] GVariant* components() const;
    void kill(const Call& call);
    /** Kills the command if the caller leaves the bus first. */
    void run_command(const Call& call);
    void start_component(const Call& call);
    void report_end(const Component& component);
    bool end_components();

    const Options& options_;
    std::string programs_;
    ComponentLog log_{"television"};
    BusConnection bus_;
    std::vector<std::unique_ptr<Component>> components_;
    std::list<BusObject> refusing_;
    std::size_t starting_ = 0;
    std::string failure_;
    std::unique_ptr<Process> command_;
    EventSource kill_;
    bool component_is_missing_ = false;
    std::list<Running> running_;
    std::optional<BusObject> object_;
};

} // namespace simulator
