#include "television.h"

#include "logs.h"

#include <algorithm>
#include <csignal>

namespace simulator {
namespace {

constexpr guint end_limit_milliseconds = 10'000;
constexpr auto terminated = 128 + SIGTERM;

std::vector<std::string> join(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

bool is_own_screen(const std::string& screen) { return screen.find('x') != std::string::npos; }

} // namespace

Television::Television(Plan plan) : plan_(std::move(plan)) {}

Component& Television::add_component(const std::string& name, std::vector<std::string> command) {
    Component& component = components_.emplace_back(name, std::move(command),
                                                    [this](const Component& ended) { tell_end(ended); });
    component.start();
    return component;
}

// What does not wait for another component is started before the first is waited for.
void Television::start() {
    const std::string session_bus = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    Component& system_bus = add_component("system_bus", {"dbus-daemon", "--nofork", "--print-address=1",
                                                         "--config-file=" + plan_.system_bus_configuration});
    Component& user_bus = add_component("session_bus", {"dbus-daemon", "--nofork", "--print-address=1",
                                                        "--session", "--address=" + session_bus});
    Component* screen = nullptr;
    if (is_own_screen(plan_.screen))
        screen = &add_component("screen", {"Xvfb", "-displayfd", "1", "-screen", "0", plan_.screen + "x24",
                                           "-nolisten", "tcp", "-noreset", "-dpi", "96"});
    system_bus.wait_until_ready();
    Component& radio_module =
        add_component("radio_module", join({plan_.programs + "/radio_module"}, plan_.radio_options));
    Component& ncp_host = add_component("ncp_host", join({plan_.programs + "/ncp_host"}, plan_.host_options));
    user_bus.wait_until_ready();
    if (screen != nullptr) {
        g_setenv("DISPLAY", (":" + screen->wait_until_ready()).c_str(), TRUE);
        if (plan_.has_window_manager)
            add_component("window_manager", {plan_.programs + "/window_manager"}).wait_until_ready();
    }
    if (plan_.screen != "none")
        add_component("ui_driver", {plan_.programs + "/ui_driver"}).wait_until_ready();
    radio_module.wait_until_ready();
    ncp_host.wait_until_ready();
}

int Television::run() {
    Descriptors descriptors;
    if (plan_.logs_application)
        descriptors = written_to(log_path("application"));
    command_ = std::make_unique<Process>(plan_.command, std::move(descriptors));
    while (command_->runs())
        g_main_context_iteration(nullptr, TRUE);
    kill_.reset();
    const bool components_ended_well = end_components();
    return *command_->status() == 0 && !components_ended_well ? 1 : *command_->status();
}

// What fails because another component had gone before was told when that one went.
bool Television::end_components() {
    bool all_ended_well = true;
    std::for_each(components_.rbegin(), components_.rend(), [&](Component& component) {
        component.end();
        log_.note("the ", component.name(), " ", component.state());
        if (component_is_missing_ || !component.failed())
            return;
        all_ended_well = false;
        log_.error("the ", component.name(), " ", component.state(),
                   " at its end: ", end_of_log(component.name()));
    });
    return all_ended_well;
}

void Television::end() {
    if (!command_)
        std::exit(terminated); // before the components are up there is nothing to end in order
    command_->terminate();
    if (!kill_)
        kill_ = EventSource::every(end_limit_milliseconds, [this] { command_->send_signal(SIGKILL); });
}

Component* Television::find_component(const std::string& name) {
    const auto component = std::ranges::find(components_, name, &Component::name);
    return component == components_.end() ? nullptr : &*component;
}

void Television::tell_end(const Component& component) {
    component_is_missing_ = true;
    // Who would ask for another system bus could not be heard.
    const std::string remedy =
        component.name() == "system_bus" ? "" : "; 'tvctl start " + component.name() + "' starts it again";
    log_.error("the ", component.name(), " ", component.state(), remedy, ": ", end_of_log(component.name()));
    if (on_component_ended)
        on_component_ended(component);
}

} // namespace simulator
