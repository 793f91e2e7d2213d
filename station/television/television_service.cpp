#include "television_service.h"

#include "common/processes.h"
#include "common/refusal.h"
#include "common/texts.h"
#include "contract.h"
#include "logs.h"

#include <csignal>
#include <gio/gunixfdlist.h>
#include <stdexcept>

namespace station {
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

TelevisionService::TelevisionService(GDBusConnection* connection, Television& television)
    : connection_(connection), television_(television), guests_(connection),
      object_(connection, television_contract::path, television_contract::introspection,
              [this](const auto& method, auto* arguments, auto* invocation) {
                  handle_call(method, arguments, invocation);
              }) {
    television_.on_part_ended = [this](const Part& part) {
        g_dbus_connection_emit_signal(
            connection_, nullptr, television_contract::path, television_contract::interface, "PartEnded",
            g_variant_new("(ss)", part.name().c_str(), part.state().c_str()), nullptr);
    };
}

TelevisionService::~TelevisionService() { television_.on_part_ended = nullptr; }

void TelevisionService::handle_call(const std::string& method, GVariant* arguments,
                                    GDBusMethodInvocation* invocation) {
    GVariant* answer = nullptr;
    if (method == "Run")
        return run_guest(arguments, invocation);
    if (method == "Parts")
        answer = parts();
    else if (method == "Start")
        start_part(text_argument(arguments));
    else if (method == "Kill")
        kill_program(text_argument(arguments));
    else if (method == "SetLanguage")
        set_language(text_argument(arguments));
    else if (method == "Logs")
        answer = g_variant_new("(@as)", list_of(log_names()));
    else
        television_.end();
    g_dbus_method_invocation_return_value(invocation, answer);
}

GVariant* TelevisionService::parts() const {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("a(ssi)"));
    for (const Part& part : television_.parts())
        g_variant_builder_add(&list, "(ssi)", part.name().c_str(), part.state().c_str(), part.process());
    const Process* const command = television_.command();
    g_variant_builder_add(&list, "(ssi)", "application",
                          command != nullptr ? command->state().c_str() : "was not started",
                          command != nullptr ? command->number() : 0);
    return g_variant_new("(a(ssi))", &list);
}

void TelevisionService::kill_program(const std::string& name) {
    kill_all(name);
    if (Part* const part = television_.find_part(name))
        part->wait_for_end();
}

void TelevisionService::start_part(const std::string& name) {
    Part* const part = television_.find_part(name);
    if (part == nullptr)
        throw Refusal("NoSuchPart", "the television has no part called " + name);
    if (part->runs())
        throw Refusal("RunsAlready", "the " + name + " runs already");
    try {
        part->start();
        part->wait_until_ready();
    } catch (const std::runtime_error& error) {
        throw Refusal("DidNotStart", error.what());
    }
}

void TelevisionService::run_guest(GVariant* arguments, GDBusMethodInvocation* invocation) {
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
        guests_.run(texts_of(command), texts_of(environment), {descriptor(0), descriptor(1), descriptor(2)},
                    invocation);
    } catch (const std::runtime_error& error) {
        throw Refusal("BadCommand", error.what());
    }
}

} // namespace station
