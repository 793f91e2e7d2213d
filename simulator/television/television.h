/** The whole television: its components and the command that runs in it. */
#pragma once

#include "base/event_source.h"
#include "base/log.h"
#include "base/options.h"
#include "component.h"

namespace simulator {

/**
 * Starts the components, then the command; when the command has ended, or the television is asked to end, the
 * components end in the reverse order.
 *
 * A component that ends by itself is reported on standard error and in television.log, and can be started again.
 */
class Television {
public:
    /**
     * @param options  see the help of simulator/tv. They outlive the television.
     * @param programs the folder of the simulator's programs.
     */
    Television(const Options& options, std::string programs);
    ~Television();
    Television(const Television&) = delete;
    Television& operator=(const Television&) = delete;

    /** Starts the components; each is ready then. @throws std::runtime_error. */
    void start();
    /** Runs the command to its end. @return its status as a shell says it; 1 instead of 0 when a component
     * failed at its end, and none had ended before. */
    int run();
    /** Asks the command to end in order; one that does not within ten seconds is killed. */
    void end();

    /** All components, in the order in which they were started. */
    [[nodiscard]] const std::vector<std::unique_ptr<Component>>& components() const { return components_; }
    /** The component of that name, null when there is none. */
    [[nodiscard]] Component* find_component(const std::string& name) const;
    /** The command; null before it was started. */
    [[nodiscard]] const Process* command() const { return command_.get(); }
    /** The connection to the system bus. */
    [[nodiscard]] GDBusConnection* bus() const { return bus_.get(); }

    /** Called whenever a component has ended by itself. */
    std::function<void(const Component&)> on_component_ended;

private:
    template <class Kind, class... Arguments>
    Kind& add(std::string name, Arguments&&... arguments);
    void add_ncp_host();
    void add_ui_driver();
    void wait_until_ready();
    void report_end(const Component& component);
    bool end_components();

    const Options& options_;
    std::string programs_;
    ComponentLog log_{"television"};
    BusConnection bus_;
    std::vector<std::unique_ptr<Component>> components_;
    std::vector<std::unique_ptr<BusObject>> objects_; // of what this television does not have
    std::size_t starting_ = 0;
    std::string failure_;
    std::unique_ptr<Process> command_;
    EventSource kill_;
    bool component_is_missing_ = false;
};

} // namespace simulator
