#include "single_instance.h"

#include "platform/log.h"
#include "session_bus.h"
#include "time_limit.h"

#include <algorithm>
#include <cctype>

namespace platform {
namespace {

constexpr auto* application_interface = "org.freedesktop.Application";
constexpr auto* introspection = "<node><interface name='org.freedesktop.Application'>"
                                "<method name='Activate'><arg type='a{sv}' direction='in'/></method>"
                                "</interface></node>";

// The bus's own numbers for RequestName.
constexpr unsigned do_not_queue = 4;
constexpr unsigned name_is_taken = 3;

void log_failure(const GError& error) {
    __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no single instance: %s", error.message);
}

void activated(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
               const char* /*interface*/, const char* /*method*/, GVariant* /*parameters*/,
               GDBusMethodInvocation* invocation, gpointer launched) {
    g_dbus_method_invocation_return_value(invocation, nullptr);
    (*static_cast<const std::function<void()>*>(launched))();
}

} // namespace

std::string application_id(std::string_view program) {
    std::string name(program.substr(program.find_last_of('/') + 1));
    const auto unsafe = [](unsigned char letter) { return letter >= 0x80 || std::isalnum(letter) == 0; };
    std::ranges::replace_if(name, unsafe, '_');
    constexpr std::size_t longest = 200;                 // a bus name has at most 255 bytes
    return "tv.application.A" + name.substr(0, longest); // no element of a bus name begins with a digit
}

SingleInstance::SingleInstance(GDBusConnection* session_bus, std::string_view program,
                               std::function<void()> launched)
    : launched_(std::move(launched)), id_(application_id(program)), path_("/" + id_) {
    if (!session_bus)
        return;
    std::ranges::replace(path_, '.', '/');
    bus_.reset(G_DBUS_CONNECTION(g_object_ref(session_bus)));
    listen(); // before the name is taken, so that no launch finds the name without the object
    launched_elsewhere_ = !take_name();
    if (launched_elsewhere_)
        launch_owner();
}

SingleInstance::~SingleInstance() {
    if (!bus_)
        return;
    g_dbus_connection_unregister_object(bus_.get(), registration_);
    g_dbus_connection_call(bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "ReleaseName", g_variant_new("(s)", id_.c_str()), nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

void SingleInstance::listen() {
    static constexpr GDBusInterfaceVTable calls{
        .method_call = activated, .get_property = nullptr, .set_property = nullptr, .padding = {}};
    g_autoptr(GDBusNodeInfo) node = g_dbus_node_info_new_for_xml(introspection, nullptr);
    g_autoptr(GError) error = nullptr;
    registration_ = g_dbus_connection_register_object(
        bus_.get(), path_.c_str(), g_dbus_node_info_lookup_interface(node, application_interface), &calls,
        &launched_, nullptr, &error);
    if (registration_ == 0)
        log_failure(*error);
}

bool SingleInstance::take_name() const {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", id_.c_str(), do_not_queue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE,
        static_cast<int>(session_bus_limit.count()), nullptr, &error);
    if (!reply) {
        log_failure(*error);
        return true;
    }
    unsigned answer = 0;
    g_variant_get(reply, "(u)", &answer);
    return answer != name_is_taken;
}

void SingleInstance::launch_owner() const {
    g_dbus_connection_call(bus_.get(), id_.c_str(), path_.c_str(), application_interface, "Activate",
                           g_variant_new("(a{sv})", nullptr), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
                           nullptr, nullptr, nullptr);
    const TimeLimit limit(session_bus_limit);
    g_autoptr(GError) error = nullptr;
    if (!g_dbus_connection_flush_sync(bus_.get(), limit.cancellable(), &error))
        log_failure(*error);
}

} // namespace platform
