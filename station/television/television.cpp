#include "television.h"

#include "logs.h"

#include <algorithm>
#include <csignal>

namespace station {
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

Part& Television::add_part(const std::string& name, std::vector<std::string> command) {
    Part& part =
        parts_.emplace_back(name, std::move(command), [this](const Part& ended) { tell_end(ended); });
    part.start();
    return part;
}

// What does not wait for another part is started before the first is waited for.
void Television::start() {
    const std::string session_bus = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    Part& system_bus = add_part("system_bus", {"dbus-daemon", "--nofork", "--print-address=1",
                                               "--config-file=" + plan_.system_bus_configuration});
    Part& user_bus = add_part("session_bus", {"dbus-daemon", "--nofork", "--print-address=1", "--session",
                                              "--address=" + session_bus});
    Part* screen = nullptr;
    if (is_own_screen(plan_.screen))
        screen = &add_part("screen", {"Xvfb", "-displayfd", "1", "-screen", "0", plan_.screen + "x24",
                                      "-nolisten", "tcp", "-noreset", "-dpi", "96"});
    system_bus.wait_until_ready();
    Part& radio_module =
        add_part("radio_module", join({plan_.programs + "/radio_module"}, plan_.radio_options));
    Part& ncp_host = add_part("ncp_host", join({plan_.programs + "/ncp_host"}, plan_.host_options));
    user_bus.wait_until_ready();
    if (screen != nullptr) {
        g_setenv("DISPLAY", (":" + screen->wait_until_ready()).c_str(), TRUE);
        if (plan_.has_window_manager)
            add_part("window_manager", {plan_.programs + "/window_manager"}).wait_until_ready();
    }
    if (plan_.screen != "none")
        add_part("operator", {plan_.programs + "/operator"}).wait_until_ready();
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
    const bool parts_ended_well = end_parts();
    return *command_->status() == 0 && !parts_ended_well ? 1 : *command_->status();
}

// What fails because another part had gone before was told when that one went.
bool Television::end_parts() {
    bool all_ended_well = true;
    std::for_each(parts_.rbegin(), parts_.rend(), [&](Part& part) {
        part.end();
        log_.note("the ", part.name(), " ", part.state());
        if (part_is_missing_ || !part.failed())
            return;
        all_ended_well = false;
        log_.error("the ", part.name(), " ", part.state(), " at its end: ", end_of_log(part.name()));
    });
    return all_ended_well;
}

void Television::end() {
    if (!command_)
        std::exit(terminated); // before the parts are up there is nothing to end in order
    command_->terminate();
    if (!kill_)
        kill_ = EventSource::every(end_limit_milliseconds, [this] { command_->send_signal(SIGKILL); });
}

Part* Television::find_part(const std::string& name) {
    const auto part = std::ranges::find(parts_, name, &Part::name);
    return part == parts_.end() ? nullptr : &*part;
}

void Television::tell_end(const Part& part) {
    part_is_missing_ = true;
    // Who would ask for another system bus could not be heard.
    const std::string remedy =
        part.name() == "system_bus" ? "" : "; 'tvctl start " + part.name() + "' starts it again";
    log_.error("the ", part.name(), " ", part.state(), remedy, ": ", end_of_log(part.name()));
    if (on_part_ended)
        on_part_ended(part);
}

} // namespace station
