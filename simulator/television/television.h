/** The whole television: its components and the command that runs in it. */
#pragma once

#include "base/event_source.h"
#include "base/log.h"
#include "component.h"
#include "radio/radio_module.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace simulator {

/** What the television is made of. */
struct Plan {
    std::string programs;                 /**< the folder of the simulator's programs */
    std::string system_bus_configuration; /**< of its dbus-daemon */
    std::string screen;                   /**< "WIDTHxHEIGHT" of an own screen, "user" or "none" */
    RadioOptions radio;
    std::vector<std::string> host_answers; /**< of the simulated NCP host, each "METHOD=BEHAVIOUR" */
    std::string host;                      /**< a program in its place; empty: none */
    bool has_window_manager = true;        /**< on an own screen */
    bool logs_application = false; /**< the command's output goes to application.log, not to the terminal */
    int status_descriptor = -1;    /**< gets the status when the television has ended in order */
    std::vector<std::string> command;
};

/**
 * Starts the components, then the command; when the command has ended, or the television is asked to end, the
 * components end in the reverse order.
 *
 * A component that ends by itself is reported on standard error and in television.log, and can be started again.
 */
class Television {
public:
    explicit Television(Plan plan);
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

    Plan plan_;
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
