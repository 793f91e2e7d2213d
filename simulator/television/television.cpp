#include "television.h"

#include "base/strings.h"
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

void kill_all(const Call& call, const std::string& program) {
    const auto ended = +[](GObject* killall, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> asked(static_cast<Call*>(data));
        if (g_subprocess_wait_check_finish(G_SUBPROCESS(killall), result, nullptr) != FALSE)
            asked->answer();
        else
            asked->refuse(Refusal("NoSuchProcess", "no process is named " + asked->text()));
    };
    g_autoptr(GError) error = nullptr;
    g_autoptr(GSubprocess) killall = g_subprocess_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE, &error, "killall",
                                                      "-KILL", "--", program.c_str(), nullptr);
    if (killall == nullptr)
        throw std::runtime_error(error->message);
    g_subprocess_wait_check_async(killall, nullptr, ended, std::make_unique<Call>(call.later()).release());
}

/** Keeps all other settings. */
void set_language(const std::string& language) {
    g_autofree char* path = g_build_filename(g_get_user_config_dir(), "tv-platform", "settings.ini", nullptr);
    g_autoptr(GKeyFile) settings = g_key_file_new();
    g_key_file_load_from_file(settings, path, G_KEY_FILE_KEEP_COMMENTS, nullptr); // the file is optional
    g_key_file_set_string(settings, "db/menu_widget", "language", language.c_str());
    g_autoptr(GError) error = nullptr;
    if (g_key_file_save_to_file(settings, path, &error) == FALSE)
        throw Refusal("NotWritten", error->message);
}

} // namespace

Television::Television(const Options& options, std::string programs)
    : options_(options), programs_(std::move(programs)) {}

void Television::start(std::unique_ptr<Component> component) {
    component->on_end = [this](const Component& ended) { report_end(ended); };
    components_.push_back(std::move(component));
    ++starting_;
    components_.back()->start([this](const std::string& failure) {
        --starting_;
        failure_ = failure_.empty() ? failure : failure_;
    });
}

const ProcessComponent& Television::start_process(const std::string& name, std::vector<std::string> command,
                                                  const std::string& bus_name) {
    auto component = std::make_unique<ProcessComponent>(name, std::move(command), bus(), bus_name);
    const ProcessComponent& started = *component;
    start(std::move(component));
    return started;
}

void Television::start_simulation(const std::string& name, const std::string& interface,
                                  SimulatedComponent::Make make) {
    start(std::make_unique<SimulatedComponent>(name, bus(), interface, std::move(make)));
}

void Television::refuse_all(const std::string& interface, const Refusal& refusal) {
    refusing_.emplace_back(bus(), interface,
                           every_method(interface, [refusal](Call& /*call*/) { throw refusal; }));
}

// Starts independent components in parallel.
void Television::start_components() {
    const std::string screen_size = options_.text("screen");
    const bool has_own_screen = screen_size.find('x') != std::string::npos;
    const ProcessComponent* screen = nullptr;
    start_process("system_bus", {"dbus-daemon", "--nofork", "--print-address=1",
                                 "--config-file=" + options_.text("system-bus")});
    wait_until_ready();
    bus_ = connect_to_bus(g_getenv("DBUS_SYSTEM_BUS_ADDRESS"));
    start_process("session_bus", {"dbus-daemon", "--nofork", "--print-address=1", "--session",
                                  std::string("--address=") + g_getenv("DBUS_SESSION_BUS_ADDRESS")});
    if (has_own_screen)
        screen = &start_process("screen", {"Xvfb", "-displayfd", "1", "-screen", "0", screen_size + "x24",
                                           "-nolisten", "tcp", "-noreset", "-dpi", "96"});
    start_simulation("radio_module", "org.velmora.Simulator.RadioModule",
                     [this](const Action& /*die*/) { return std::make_unique<RadioModule>(options_); });
    start_ncp_host("org.velmora.Simulator.NcpHost");
    wait_until_ready();
    if (has_own_screen) {
        g_setenv("DISPLAY", (":" + screen->first_line()).c_str(), TRUE);
        if (!options_.has("no-window-manager"))
            start_process("window_manager", {programs_ + "/window_manager"});
        wait_until_ready();
    }
    constexpr auto interface = "org.velmora.Simulator.Ui";
    if (screen_size == "none")
        refuse_all(interface, Refusal("NoScreen", "this television has no screen"));
    else
        start_simulation("ui_driver", interface,
                         [this](const Action& /*die*/) { return std::make_unique<UiDriver>(bus()); });
    wait_until_ready();
}

void Television::start_ncp_host(const std::string& interface) {
    constexpr auto name = "ncp_host";
    const std::string program = options_.text("host");
    if (program.empty())
        return start_simulation(name, interface, [this](const Action& die) {
            return std::make_unique<NcpHost>(options_.all("host-answers"), die);
        });
    refuse_all(interface, Refusal("NotSimulated", "the NCP host is not simulated: --host runs " + program));
    start_process(name, {program}, contract::bus_name);
}

void Television::wait_until_ready() {
    while (starting_ > 0 && failure_.empty())
        g_main_context_iteration(nullptr, TRUE);
    if (!failure_.empty())
        throw std::runtime_error(failure_);
}

int Television::run() {
    start_components();
    object_.emplace(
        bus(), "org.velmora.Simulator.Television",
        std::map<std::string, Method>{{"Components", [this](Call& call) { call.answer({components()}); }},
                                      {"Start", [this](Call& call) { start_component(call); }},
                                      {"Kill", [this](Call& call) { kill(call); }},
                                      {"Run", [this](Call& call) { run_command(call); }},
                                      {"SetLanguage", [](Call& call) { set_language(call.text()); }},
                                      {"Logs", [](Call& call) { call.answer({to_variant(log_names())}); }},
                                      {"End", [this](Call& /*call*/) { end(); }}});
    own_name(bus(), "org.velmora.Simulator");
    Descriptors descriptors;
    if (options_.has("log-application"))
        descriptors = written_to(log_path("application"));
    command_ = std::make_unique<Process>(options_.command(), std::move(descriptors));
    while (command_->runs())
        g_main_context_iteration(nullptr, TRUE);
    kill_.reset();
    const bool components_succeeded = end_components();
    return *command_->status() == 0 && !components_succeeded ? 1 : *command_->status();
}

// Once a component has exited unexpectedly, ignores failures: they are consequences of that exit, which was reported.
bool Television::end_components() {
    bool all_succeeded = true;
    std::for_each(components_.rbegin(), components_.rend(), [&](const auto& component) {
        const bool succeeded = component->end();
        log_.note("the ", component->name(), " ", component->state());
        if (component_is_missing_ || succeeded)
            return;
        all_succeeded = false;
        log_.error("the ", component->name(), " ", component->state(),
                   " during shutdown: ", end_of_log(component->name()));
    });
    return all_succeeded;
}

void Television::end() {
    if (!command_)
        std::exit(terminated); // while components are starting there is nothing to shut down
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
    // Without a system bus, tvctl cannot ask for a restart.
    const std::string remedy =
        component.name() == "system_bus" ? "" : "; restart it with 'tvctl start " + component.name() + "'";
    log_.error("the ", component.name(), " ", component.state(), remedy, ": ", end_of_log(component.name()));
    if (object_)
        object_->emit("ComponentEnded",
                      g_variant_new("(ss)", component.name().c_str(), component.state().c_str()));
}

GVariant* Television::components() const {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    const auto add = [&list](const std::string& name, const std::string& state, int process) {
        g_variant_builder_add_parsed(&list, "{'component': <%s>, 'state': <%s>, 'process': <%i>}",
                                     name.c_str(), state.c_str(), process);
    };
    for (const auto& component : components_)
        add(component->name(), component->state(), component->process());
    add("application", command_ ? command_->state() : "was not started", command_ ? command_->id() : 0);
    return g_variant_builder_end(&list);
}

void Television::kill(const Call& call) {
    Component* const component = find_component(call.text());
    if (component != nullptr && component->runs())
        component->kill([asked = call.later()] { asked.answer(); });
    else
        kill_all(call, call.text());
}

void Television::run_command(const Call& call) {
    Descriptors descriptors{FileDescriptor(call.take_descriptor(0)), FileDescriptor(call.take_descriptor(1)),
                            FileDescriptor(call.take_descriptor(2))};
    if (call.texts(0).empty() || !descriptors.error)
        throw Refusal("BadCommand", "Run needs a command and three descriptors");
    const auto running = running_.emplace(running_.end());
    const auto answer = [this, running, asked = call.later()] {
        asked.answer({g_variant_new_int32(*running->process->status())});
        running_.erase(running);
    };
    try {
        running->process =
            std::make_unique<Process>(call.texts(0), std::move(descriptors), answer, call.texts(1), true);
    } catch (const std::runtime_error& error) {
        running_.erase(running);
        throw Refusal("BadCommand", error.what());
    }
    const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer process) {
        static_cast<Process*>(process)->kill();
    };
    running->caller.reset(g_bus_watch_name_on_connection(bus(), call.sender().c_str(),
                                                         G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone,
                                                         running->process.get(), nullptr));
}

void Television::start_component(const Call& call) {
    const std::string name = call.text();
    Component* const component = find_component(name);
    if (component == nullptr)
        throw Refusal("NoSuchComponent", "the television has no component named " + name);
    if (component->runs())
        throw Refusal("AlreadyRunning", "the " + name + " is already running");
    component->start(
        [asked = call.later()](const std::string& failure) { asked.finish("NotStarted", failure); });
}

} // namespace simulator
