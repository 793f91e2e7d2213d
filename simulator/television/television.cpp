#include "television.h"

#include "ncp_host/contract.h"
#include "ncp_host/ncp_host.h"
#include "radio/radio_module.h"
#include "ui_driver/ui_driver.h"

#include <algorithm>
#include <csignal>

namespace simulator {
namespace {

constexpr guint end_limit_milliseconds = 10'000;
constexpr auto terminated = 128 + SIGTERM;

bool is_own_screen(const std::string& screen) { return screen.find('x') != std::string::npos; }

/** The object of something that this television does not have. */
std::unique_ptr<BusObject> absent(GDBusConnection* bus, const std::string& interface,
                                  const Refusal& refusal) {
    return std::make_unique<BusObject>(bus, interface,
                                       every_method(interface, [refusal](Call& /*call*/) { throw refusal; }));
}

} // namespace

Television::Television(const Options& options, std::string programs)
    : options_(options), programs_(std::move(programs)) {}

Television::~Television() = default;

template <class Kind, class... Arguments>
Kind& Television::add(std::string name, Arguments&&... arguments) {
    auto component = std::make_unique<Kind>(std::move(name), std::forward<Arguments>(arguments)...,
                                            [this](const Component& ended) { report_end(ended); });
    Kind& added = *component;
    components_.push_back(std::move(component));
    ++starting_;
    added.start([this](const std::string& failure) {
        --starting_;
        failure_ = failure_.empty() ? failure : failure_;
    });
    return added;
}

// What does not wait for another component is started before the first is waited for.
void Television::start() {
    using Command = std::vector<std::string>;
    const std::string session_bus = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    add<ProcessComponent>("system_bus", Command{"dbus-daemon", "--nofork", "--print-address=1",
                                                "--config-file=" + options_.text("system-bus")});
    wait_until_ready();
    bus_ = connect_to_bus(g_getenv("DBUS_SYSTEM_BUS_ADDRESS"));
    add<ProcessComponent>("session_bus", Command{"dbus-daemon", "--nofork", "--print-address=1", "--session",
                                                 "--address=" + session_bus});
    const ProcessComponent* screen = nullptr;
    if (is_own_screen(options_.text("screen")))
        screen = &add<ProcessComponent>("screen", Command{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                          options_.text("screen") + "x24", "-nolisten", "tcp",
                                                          "-noreset", "-dpi", "96"});
    add<SimulatedComponent>("radio_module", bus(), "org.velmora.Simulator.RadioModule",
                            [this] { return std::make_unique<RadioModule>(options_); });
    add_ncp_host();
    wait_until_ready();
    if (screen != nullptr) {
        g_setenv("DISPLAY", (":" + screen->first_line()).c_str(), TRUE);
        if (!options_.has("no-window-manager"))
            add<ProcessComponent>("window_manager", Command{programs_ + "/window_manager"});
        wait_until_ready();
    }
    add_ui_driver();
    wait_until_ready();
}

void Television::add_ncp_host() {
    constexpr auto name = "ncp_host";
    constexpr auto interface = "org.velmora.Simulator.NcpHost";
    if (options_.has("host")) {
        objects_.push_back(
            absent(bus(), interface, Refusal("NotSimulated", "the NCP host is " + options_.text("host"))));
        add<ProcessComponent>(name, std::vector{options_.text("host")}, bus(), contract::bus_name);
        return;
    }
    const auto die = [this] { dynamic_cast<SimulatedComponent&>(*find_component(name)).kill_soon(); };
    add<SimulatedComponent>(name, bus(), interface, [this, die] {
        return std::make_unique<NcpHost>(options_.all("host-answers"), die);
    });
}

void Television::add_ui_driver() {
    constexpr auto interface = "org.velmora.Simulator.Ui";
    if (options_.text("screen") == "none")
        objects_.push_back(absent(bus(), interface, Refusal("NoScreen", "this television has no screen")));
    else
        add<SimulatedComponent>("ui_driver", bus(), interface,
                                [this] { return std::make_unique<UiDriver>(bus()); });
}

void Television::wait_until_ready() {
    while (starting_ > 0 && failure_.empty())
        g_main_context_iteration(nullptr, TRUE);
    if (!failure_.empty())
        throw std::runtime_error(failure_);
}

int Television::run() {
    Descriptors descriptors;
    if (options_.has("log-application"))
        descriptors = written_to(log_path("application"));
    command_ = std::make_unique<Process>(options_.command(), std::move(descriptors));
    while (command_->runs())
        g_main_context_iteration(nullptr, TRUE);
    kill_.reset();
    const bool components_ended_well = end_components();
    return *command_->status() == 0 && !components_ended_well ? 1 : *command_->status();
}

// What fails because another component had gone before was reported when that one went.
bool Television::end_components() {
    bool all_ended_well = true;
    std::for_each(components_.rbegin(), components_.rend(), [&](const auto& component) {
        component->end();
        log_.note("the ", component->name(), " ", component->state());
        if (component_is_missing_ || !component->failed())
            return;
        all_ended_well = false;
        log_.error("the ", component->name(), " ", component->state(),
                   " at its end: ", end_of_log(component->name()));
    });
    return all_ended_well;
}

void Television::end() {
    if (!command_)
        std::exit(terminated); // before the components are up there is nothing to end in order
    command_->terminate();
    if (!kill_)
        kill_ = call_every(end_limit_milliseconds, [this] { command_->send_signal(SIGKILL); });
}

Component* Television::find_component(const std::string& name) const {
    const auto component =
        std::ranges::find(components_, name, [](const auto& each) { return each->name(); });
    return component == components_.end() ? nullptr : component->get();
}

void Television::report_end(const Component& component) {
    component_is_missing_ = true;
    // Who would ask for another system bus could not be heard.
    const std::string remedy =
        component.name() == "system_bus" ? "" : "; 'tvctl start " + component.name() + "' starts it again";
    log_.error("the ", component.name(), " ", component.state(), remedy, ": ", end_of_log(component.name()));
    if (on_component_ended)
        on_component_ended(component);
}

} // namespace simulator
