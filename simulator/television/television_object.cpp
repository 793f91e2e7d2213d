#include "television_object.h"

#include "base/processes.h"
#include "base/refusal.h"
#include "base/strings.h"
#include "contract.h"
#include "logs.h"

#include <csignal>
#include <gio/gunixfdlist.h>
#include <stdexcept>

namespace simulator {
namespace {

std::string text_argument(GVariant* arguments) {
    const char* text = nullptr;
    g_variant_get(arguments, "(&s)", &text);
    return text;
}

void kill_all(const std::string& program) {
    const auto processes = process_numbers(program);
    if (processes.empty())
        throw Refusal("NoSuchProcess", "no process is called " + program);
    for (const int process : processes)
        kill(process, SIGKILL);
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
    : connection_(connection), television_(television), runner_(connection),
      object_(connection, television_contract::path, television_contract::introspection,
              [this](const auto& method, auto* arguments, auto* invocation) {
                  handle_call(method, arguments, invocation);
              }) {
    television_.on_component_ended = [this](const Component& component) {
        g_dbus_connection_emit_signal(
            connection_, nullptr, television_contract::path, television_contract::interface, "ComponentEnded",
            g_variant_new("(ss)", component.name().c_str(), component.state().c_str()), nullptr);
    };
}

TelevisionObject::~TelevisionObject() { television_.on_component_ended = nullptr; }

void TelevisionObject::handle_call(const std::string& method, GVariant* arguments,
                                   GDBusMethodInvocation* invocation) {
    GVariant* answer = nullptr;
    if (method == "Run")
        return run_command(arguments, invocation);
    if (method == "Components")
        answer = components();
    else if (method == "Start")
        start_component(text_argument(arguments));
    else if (method == "Kill")
        kill_program(text_argument(arguments));
    else if (method == "SetLanguage")
        set_language(text_argument(arguments));
    else if (method == "Logs")
        answer = g_variant_new("(@as)", to_variant(log_names()));
    else
        television_.end();
    g_dbus_method_invocation_return_value(invocation, answer);
}

GVariant* TelevisionObject::components() const {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("a(ssi)"));
    for (const Component& component : television_.components())
        g_variant_builder_add(&list, "(ssi)", component.name().c_str(), component.state().c_str(),
                              component.process());
    const Process* const command = television_.command();
    g_variant_builder_add(&list, "(ssi)", "application",
                          command != nullptr ? command->state().c_str() : "was not started",
                          command != nullptr ? command->number() : 0);
    return g_variant_new("(a(ssi))", &list);
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
        throw Refusal("RunsAlready", "the " + name + " runs already");
    try {
        component->start();
        component->wait_until_ready();
    } catch (const std::runtime_error& error) {
        throw Refusal("DidNotStart", error.what());
    }
}

void TelevisionObject::run_command(GVariant* arguments, GDBusMethodInvocation* invocation) {
    g_autoptr(GVariant) command = g_variant_get_child_value(arguments, 0);
    g_autoptr(GVariant) environment = g_variant_get_child_value(arguments, 1);
    GUnixFDList* const list =
        g_dbus_message_get_unix_fd_list(g_dbus_method_invocation_get_message(invocation));
    if (list == nullptr || g_unix_fd_list_get_length(list) != 3 || g_variant_n_children(command) == 0)
        throw Refusal("BadCommand", "a command and its three descriptors are needed");
    const auto descriptor = [list](int index) {
        return FileDescriptor(g_unix_fd_list_get(list, index, nullptr));
    };
    try {
        runner_.run(to_strings(command), to_strings(environment),
                    {descriptor(0), descriptor(1), descriptor(2)}, invocation);
    } catch (const std::runtime_error& error) {
        throw Refusal("BadCommand", error.what());
    }
}

} // namespace simulator
