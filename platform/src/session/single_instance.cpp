#include "single_instance.h"

#include "platform/log.h"
#include "session_bus.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace platform {
namespace {

constexpr auto* application_interface = "org.freedesktop.Application";
constexpr auto* application_xml =
    "<node><interface name='org.freedesktop.Application'><method name='Activate'>"
    "<arg type='a{sv}' direction='in'/></method></interface></node>";

/** How long the start waits for the bus. */
constexpr gint64 bus_limit_microseconds = 1'000'000;
/** How long the start waits for a running process to answer; one that is shutting down refuses at once. */
constexpr int launch_limit_milliseconds = 1500;
/** How long the start waits for a process that is shutting down, which takes 5 s to stop the radio programs. */
constexpr gint64 exit_limit_microseconds = 30'000'000;

void log_line(LogPriority priority, const char* text) {
    __dlog_print(LogBuffer::main, priority, "PLATFORM", "%s", text);
}

std::string application_id(std::string_view program) {
    std::string name(program.substr(program.find_last_of('/') + 1));
    const auto is_unsafe = [](unsigned char letter) { return letter >= 0x80 || std::isalnum(letter) == 0; };
    std::ranges::replace_if(name, is_unsafe, '_');
    constexpr std::size_t longest = 200;                 // a bus name has at most 255 bytes
    return "tv.application.A" + name.substr(0, longest); // no element may begin with a digit
}

} // namespace

SingleInstance::SingleInstance(std::string_view program, std::function<void()> launched)
    : id_(application_id(program)), path_("/" + id_), launched_(std::move(launched)) {
    std::ranges::replace(path_, '.', '/');
    if (!has_session_bus()) {
        outcome_ = LaunchOutcome::runs;
        return;
    }
    // Exports the object before requesting the name, so that every launch finds the object.
    const auto connected = [](GDBusConnection* bus, const char* /*name*/, gpointer self) {
        static_cast<SingleInstance*>(self)->accept_launches(bus);
    };
    const auto acquired = [](GDBusConnection* /*bus*/, const char* /*name*/, gpointer self) {
        auto& outcome = static_cast<SingleInstance*>(self)->outcome_;
        outcome = outcome.value_or(LaunchOutcome::runs);
    };
    const auto not_acquired = [](GDBusConnection* bus, const char* /*name*/, gpointer self) {
        if (bus)
            return; // another process owns the name; the watch below reports that
        log_line(LogPriority::warning, "cannot use the session bus: it refused or closed the connection");
        auto& outcome = static_cast<SingleInstance*>(self)->outcome_;
        outcome = outcome.value_or(LaunchOutcome::runs);
    };
    const auto appeared = [](GDBusConnection* bus, const char* /*name*/, const char* owner, gpointer self) {
        if (g_strcmp0(owner, g_dbus_connection_get_unique_name(bus)) != 0)
            static_cast<SingleInstance*>(self)->pass_launch_to(bus, owner);
    };
    // The bus queues the request. Only the exit releases the name: a call that did so would wait for the bus's answer.
    g_bus_own_name(G_BUS_TYPE_SESSION, id_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, connected, acquired,
                   not_acquired, this, nullptr);
    g_bus_watch_name(G_BUS_TYPE_SESSION, id_.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, appeared, nullptr, this,
                     nullptr);
}

LaunchOutcome SingleInstance::settle() {
    const auto wake = [](gpointer /*data*/) -> gboolean { return G_SOURCE_CONTINUE; };
    const unsigned timer = g_timeout_add(100, wake, nullptr);
    const gint64 begin = g_get_monotonic_time();
    while (!outcome_ && g_get_monotonic_time() - begin <
                            (is_passed_on_ ? exit_limit_microseconds : bus_limit_microseconds))
        g_main_context_iteration(nullptr, TRUE);
    g_source_remove(timer);
    if (!outcome_ && is_passed_on_)
        log_line(LogPriority::error, "not started: an earlier process did not exit within 30 s");
    else if (!outcome_)
        log_line(LogPriority::warning, "the session bus does not answer: starting without it");
    outcome_ = outcome_.value_or(is_passed_on_ ? LaunchOutcome::held_up : LaunchOutcome::runs);
    return *outcome_;
}

void SingleInstance::accept_launches(GDBusConnection* bus) {
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    const auto activated = [](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                              const char* /*interface*/, const char* /*method*/, GVariant* /*arguments*/,
                              GDBusMethodInvocation* call, gpointer self) {
        g_dbus_method_invocation_return_value(call, nullptr);
        static_cast<SingleInstance*>(self)->launched_();
    };
    static const GDBusInterfaceVTable table{activated, nullptr, nullptr, {}};
    g_autoptr(GDBusNodeInfo) node = g_dbus_node_info_new_for_xml(application_xml, nullptr);
    object_ = g_dbus_connection_register_object(bus, path_.c_str(), node->interfaces[0], &table, this,
                                                nullptr, nullptr);
    bus_ = bus;
}

void SingleInstance::refuse_launches() {
    if (bus_)
        g_dbus_connection_unregister_object(bus_, object_);
}

void SingleInstance::pass_launch_to(GDBusConnection* bus, const char* owner) {
    if (outcome_) {
        log_line(LogPriority::warning, "another process of the application is also running");
        return;
    }
    is_passed_on_ = true;
    const auto answered = [](GObject* same, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        g_autoptr(GVariant) reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(same), result, &error);
        const bool is_busy = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
        auto& outcome = static_cast<SingleInstance*>(self)->outcome_;
        if (reply || is_busy)
            outcome = outcome.value_or(LaunchOutcome::reached);
        else
            log_line(LogPriority::info, "an earlier process is shutting down: waiting for it to exit");
    };
    g_dbus_connection_call(bus, owner, path_.c_str(), application_interface, "Activate",
                           g_variant_new("(a{sv})", nullptr), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           launch_limit_milliseconds, nullptr, answered, this);
}

} // namespace platform
