#include "television_object.h"

#include "base/strings.h"
#include "logs.h"

#include <csignal>
#include <stdexcept>

namespace simulator {
namespace {

void kill_all(const std::string& program) {
    Process killall({"killall", "-KILL", "--", program});
    if (killall.wait_for_end(std::chrono::seconds(10)) != 0)
        throw Refusal("NoSuchProcess", "no process is called " + program);
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

TelevisionObject::TelevisionObject(GDBusConnection* connection, Television& television)
    : television_(television), runner_(connection),
      object_(connection, "org.velmora.Simulator.Television",
              {{"Components", [this](Call& call) { call.answer({components()}); }},
               {"Start", [this](Call& call) { start_component(call.text()); }},
               {"Kill", [this](Call& call) { kill_program(call.text()); }},
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
    for (const Component& component : television_.components())
        add(component.name(), component.state(), component.process());
    const Process* const command = television_.command();
    add("application", command != nullptr ? command->state() : "was not started",
        command != nullptr ? command->number() : 0);
    return g_variant_builder_end(&list);
}

void TelevisionObject::kill_program(const std::string& name) {
    kill_all(name);
    if (Component* const component = television_.find_component(name))
        component->wait_for_end();
}

void TelevisionObject::start_component(const std::string& name) {
    Component* const component = television_.find_component(name);
    if (component == nullptr)
        throw Refusal("NoSuchComponent", "the television has no component called " + name);
    if (component->runs())
        throw Refusal("AlreadyRunning", "the " + name + " runs already");
    try {
        component->start();
        component->wait_until_ready();
    } catch (const std::runtime_error& error) {
        throw Refusal("NotStarted", error.what());
    }
}

} // namespace simulator
