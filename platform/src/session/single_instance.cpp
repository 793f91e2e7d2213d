#include "single_instance.h"

#include "common/object_pointer.h"
#include "platform/log.h"
#include "session_bus.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <utility>

namespace platform {
namespace {

constexpr auto* application_interface = "org.freedesktop.Application";
constexpr auto* ending_error = "tv.application.Error.Ending";

/** How long the bus may hold up the start. */
constexpr unsigned bus_limit_milliseconds = 1000;
/** How long the running process, or its GIO thread, may take to answer a launch. */
constexpr int launch_limit_milliseconds = 1500;
/** How long a process that is ending is waited for; the end of the radio's programs takes five seconds. */
constexpr unsigned end_limit_milliseconds = 30'000;

std::atomic<bool> accepts_launches = false; // read by GIO's worker thread
std::function<void()> launched_callback;    // the main thread's

void log_line(LogPriority priority, const char* text) {
    __dlog_print(LogBuffer::main, priority, "PLATFORM", "%s", text);
}

gboolean deliver_launch(gpointer /*data*/) {
    if (accepts_launches)
        launched_callback();
    return G_SOURCE_REMOVE;
}

/** On GIO's worker thread: answers launches, and lets all other messages pass. */
GDBusMessage* answer_launch(GDBusConnection* bus, GDBusMessage* message, gboolean incoming,
                            gpointer /*data*/) {
    if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL ||
        g_strcmp0(g_dbus_message_get_interface(message), application_interface) != 0 ||
        g_strcmp0(g_dbus_message_get_member(message), "Activate") != 0)
        return message;
    const ObjectPointer<GDBusMessage> call(message);
    const bool is_accepted = accepts_launches;
    if (is_accepted)
        g_idle_add_full(G_PRIORITY_DEFAULT, deliver_launch, nullptr, nullptr);
    const ObjectPointer<GDBusMessage> answer(
        is_accepted
            ? g_dbus_message_new_method_reply(call.get())
            : g_dbus_message_new_method_error_literal(call.get(), ending_error, "the application is ending"));
    g_dbus_connection_send_message(bus, answer.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    return nullptr;
}

/** Dispatches GLib's default context until `is_over`, at most for a time. */
template <typename Predicate>
void dispatch_until(Predicate is_over, unsigned milliseconds) {
    bool is_late = false;
    const auto set = [](gpointer late) -> gboolean { return *static_cast<bool*>(late) = true; };
    const unsigned timer = g_timeout_add(milliseconds, set, &is_late);
    while (!is_over() && !is_late)
        g_main_context_iteration(nullptr, TRUE);
    g_source_remove(timer);
}

} // namespace

std::string application_id(std::string_view program) {
    std::string name(program.substr(program.find_last_of('/') + 1));
    const auto unsafe = [](unsigned char letter) { return letter >= 0x80 || std::isalnum(letter) == 0; };
    std::ranges::replace_if(name, unsafe, '_');
    constexpr std::size_t longest = 200;                 // a bus name has at most 255 bytes
    return "tv.application.A" + name.substr(0, longest); // no element of a bus name begins with a digit
}

SingleInstance::SingleInstance(std::string_view program, std::function<void()> launched)
    : id_(application_id(program)) {
    launched_callback = std::move(launched);
    accepts_launches = true;
    if (!has_session_bus()) {
        decide(LaunchOutcome::runs);
        return;
    }
    // Before the name is asked for, so that no launch finds it without an answer.
    const auto connected = [](GDBusConnection* bus, const char* /*name*/, gpointer /*self*/) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        g_dbus_connection_add_filter(bus, answer_launch, nullptr, nullptr);
    };
    const auto acquired = [](GDBusConnection* /*bus*/, const char* /*name*/, gpointer self) {
        static_cast<SingleInstance*>(self)->decide(LaunchOutcome::runs);
    };
    const auto not_acquired = [](GDBusConnection* bus, const char* /*name*/, gpointer self) {
        static_cast<SingleInstance*>(self)->watch_owner(bus);
    };
    // The bus keeps a queue. GLib would wait for its answer when the name is given back, so that is left to the end
    // of the process.
    g_bus_own_name(G_BUS_TYPE_SESSION, id_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, connected, acquired,
                   not_acquired, this, nullptr);
}

SingleInstance::~SingleInstance() {
    refuse_launches();
    if (watch_ != 0)
        g_bus_unwatch_name(watch_);
}

void SingleInstance::refuse_launches() { accepts_launches = false; }

LaunchOutcome SingleInstance::settle() {
    dispatch_until([this] { return outcome_ || is_other_there_; }, bus_limit_milliseconds);
    if (is_other_there_)
        dispatch_until([this] { return outcome_.has_value(); }, end_limit_milliseconds);
    if (!outcome_ && is_other_there_)
        log_line(LogPriority::error, "the application's earlier process has not ended in 30 s: not started");
    else if (!outcome_)
        log_line(LogPriority::warning, "the session bus does not answer: the start does not wait for it");
    decide(is_other_there_ ? LaunchOutcome::held_up : LaunchOutcome::runs);
    return *outcome_;
}

/** The first counts. */
void SingleInstance::decide(LaunchOutcome outcome) {
    outcome_ = outcome_.value_or(outcome);
    if (outcome_ == LaunchOutcome::reached)
        refuse_launches(); // the queue may still bring the name
}

void SingleInstance::watch_owner(GDBusConnection* bus) {
    if (!bus) {
        log_line(LogPriority::warning, "the session bus is not used: it lets nobody in, or has gone");
        decide(LaunchOutcome::runs);
        return;
    }
    const auto appeared = [](GDBusConnection* same, const char* /*name*/, const char* owner, gpointer self) {
        if (g_strcmp0(owner, g_dbus_connection_get_unique_name(same)) != 0)
            static_cast<SingleInstance*>(self)->hand_launch_to(same, owner);
    };
    if (watch_ == 0)
        watch_ = g_bus_watch_name_on_connection(bus, id_.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, appeared,
                                                nullptr, this, nullptr);
}

void SingleInstance::hand_launch_to(GDBusConnection* bus, const char* owner) {
    if (outcome_) {
        log_line(LogPriority::warning, "another process of the application runs as well");
        return;
    }
    is_other_there_ = true;
    const auto answered = [](GObject* same, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        g_autoptr(GVariant) reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(same), result, &error);
        const bool is_silent = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
        if (is_silent)
            log_line(LogPriority::warning, "the application's running process does not answer the launch");
        if (reply || is_silent)
            static_cast<SingleInstance*>(self)->decide(LaunchOutcome::reached);
        else
            log_line(LogPriority::info, "the application's earlier process is ending: waiting for its end");
    };
    std::string path = "/" + id_;
    std::ranges::replace(path, '.', '/');
    g_dbus_connection_call(bus, owner, path.c_str(), application_interface, "Activate",
                           g_variant_new("(a{sv})", nullptr), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           launch_limit_milliseconds, nullptr, answered, this);
}

} // namespace platform
