#include "television_object.h"

#include "base/log.h"
#include "base/strings.h"

#include <csignal>

namespace simulator {
namespace {

void kill_all(const Call& call, const std::string& program) {
    const auto ended = +[](GObject* killall, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> asked(static_cast<Call*>(data));
        if (g_subprocess_wait_check_finish(G_SUBPROCESS(killall), result, nullptr) != FALSE)
            asked->answer();
        else
            asked->refuse(Refusal("NoSuchProcess", "no process is called " + asked->text()));
    };
    g_autoptr(GSubprocess) killall = g_subprocess_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE, nullptr, "killall",
                                                      "-KILL", "--", program.c_str(), nullptr);
    if (killall != nullptr)
        g_subprocess_wait_check_async(killall, nullptr, ended,
                                      std::make_unique<Call>(call.later()).release());
}

/** Keeps what else is in the settings. */
void set_language(const std::string& language) {
    g_autofree char* path = g_build_filename(g_get_user_config_dir(), "tv-platform", "settings.ini", nullptr);
    g_autofree char* folder = g_path_get_dirname(path);
    g_mkdir_with_parents(folder, 0700);
    g_autoptr(GKeyFile) settings = g_key_file_new();
    g_key_file_load_from_file(settings, path, G_KEY_FILE_KEEP_COMMENTS, nullptr); // it need not be there
    g_key_file_set_string(settings, "db/menu_widget", "language", language.c_str());
    g_autoptr(GError) error = nullptr;
    if (g_key_file_save_to_file(settings, path, &error) == FALSE)
        throw Refusal("NotWritten", error->message);
}

} // namespace

/** One running command, and the caller that waits for it. */
class CommandRunner::Running {
public:
    Running(CommandRunner& runner, const Call& call)
        : runner_(runner), call_(call),
          process_(
              call.texts(0),
              {FileDescriptor(call.take_descriptor(0)), FileDescriptor(call.take_descriptor(1)),
               FileDescriptor(call.take_descriptor(2))},
              [this] { answer(); }, call.texts(1), true) {
        const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer self) {
            static_cast<Running*>(self)->process_.kill();
        };
        caller_watch_ =
            g_bus_watch_name_on_connection(runner.connection_, call.sender().c_str(),
                                           G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone, this, nullptr);
    }
    ~Running() { g_bus_unwatch_name(caller_watch_); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    void answer() {
        call_.answer({g_variant_new_int32(*process_.status())});
        runner_.remove(*this);
    }

    CommandRunner& runner_;
    Call call_;
    Process process_;
    guint caller_watch_ = 0;
};

CommandRunner::CommandRunner(GDBusConnection* connection) : connection_(connection) {}

CommandRunner::~CommandRunner() = default;

void CommandRunner::run(const Call& call) {
    if (call.texts(0).empty() || !FileDescriptor(call.take_descriptor(2)))
        throw Refusal("BadCommand", "a command and its three descriptors are needed");
    try {
        running_.push_back(std::make_unique<Running>(*this, call));
    } catch (const std::runtime_error& error) {
        throw Refusal("BadCommand", error.what());
    }
}

void CommandRunner::remove(const Running& command) {
    std::erase_if(running_, [&command](const auto& held) { return held.get() == &command; });
}

TelevisionObject::TelevisionObject(Television& television)
    : television_(television), runner_(television.bus()),
      object_(television.bus(), "org.velmora.Simulator.Television",
              {{"Components", [this](Call& call) { call.answer({components()}); }},
               {"Start", [this](Call& call) { start_component(call); }},
               {"Kill", [this](Call& call) { kill(call); }},
               {"Run", [this](Call& call) { runner_.run(call.later()); }},
               {"SetLanguage", [](Call& call) { set_language(call.text()); }},
               {"Logs", [](Call& call) { call.answer({to_variant(log_names())}); }},
               {"End", [this](Call& /*call*/) { television_.end(); }}}) {
    television_.on_component_ended = [this](const Component& component) {
        object_.emit("ComponentEnded",
                     g_variant_new("(ss)", component.name().c_str(), component.state().c_str()));
    };
}

TelevisionObject::~TelevisionObject() { television_.on_component_ended = nullptr; }

GVariant* TelevisionObject::components() const {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    const auto add = [&list](const std::string& name, const std::string& state, int process) {
        g_variant_builder_add_parsed(&list, "{'component': <%s>, 'state': <%s>, 'process': <%i>}",
                                     name.c_str(), state.c_str(), process);
    };
    for (const auto& component : television_.components())
        add(component->name(), component->state(), component->process());
    const Process* const command = television_.command();
    add("application", command != nullptr ? command->state() : "was not started",
        command != nullptr ? command->number() : 0);
    return g_variant_builder_end(&list);
}

void TelevisionObject::kill(const Call& call) {
    Component* const component = television_.find_component(call.text());
    if (component != nullptr && component->runs())
        component->kill([asked = call.later()] { asked.answer(); });
    else
        kill_all(call, call.text());
}

void TelevisionObject::start_component(const Call& call) {
    const std::string name = call.text();
    Component* const component = television_.find_component(name);
    if (component == nullptr)
        throw Refusal("NoSuchComponent", "the television has no component called " + name);
    if (component->runs())
        throw Refusal("AlreadyRunning", "the " + name + " runs already");
    component->start([asked = call.later()](const std::string& failure) {
        if (failure.empty())
            asked.answer();
        else
            asked.refuse(Refusal("NotStarted", failure));
    });
}

} // namespace simulator
