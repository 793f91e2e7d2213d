#include "single_instance.h"

#include "platform/log.h"
#include "session_bus.h"

#include <algorithm>
#include <cctype>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr auto* application_interface = "org.freedesktop.Application";
constexpr auto* ending_error = "tv.application.Error.Ending";

// The bus's own numbers for RequestName.
constexpr unsigned do_not_queue = 4;
constexpr unsigned name_is_taken = 3;

/** How long a process that is ending is waited for; the end of the radio's programs takes five seconds. */
constexpr auto end_limit = 30s;
constexpr auto look_interval = 100ms;
/** How long the running process, or its GIO thread, may take to answer a launch. */
constexpr std::chrono::milliseconds launch_limit = 1500ms;

std::string object_path(const std::string& id) {
    std::string path = "/" + id;
    std::ranges::replace(path, '.', '/');
    return path;
}

void log_line(LogPriority priority, const char* text) {
    __dlog_print(LogBuffer::main, priority, "PLATFORM", "%s", text);
}

} // namespace

/** Shared with GIO's worker thread and with the calls that wait in the main loop. */
class Launches : public std::enable_shared_from_this<Launches> {
public:
    explicit Launches(std::function<void()> launched) : launched_(std::move(launched)) {}

    void refuse() {
        const std::lock_guard lock(mutex_);
        accepted_ = false;
    }

    /** Whether a launch is accepted; it is delivered by the main loop. */
    bool take() {
        const std::lock_guard lock(mutex_);
        if (accepted_)
            g_idle_add_full(G_PRIORITY_DEFAULT, deliver, make_handle(), drop_handle);
        return accepted_;
    }

    /** A reference for GLib, which `drop_handle` deletes. */
    gpointer make_handle() {
        return std::make_unique<std::shared_ptr<Launches>>(shared_from_this()).release();
    }
    static void drop_handle(gpointer handle) {
        std::default_delete<std::shared_ptr<Launches>>()(static_cast<std::shared_ptr<Launches>*>(handle));
    }
    static Launches& of(gpointer handle) { return **static_cast<std::shared_ptr<Launches>*>(handle); }

private:
    static gboolean deliver(gpointer handle) {
        if (of(handle).is_accepted())
            of(handle).launched_();
        return G_SOURCE_REMOVE;
    }
    bool is_accepted() {
        const std::lock_guard lock(mutex_);
        return accepted_;
    }

    std::mutex mutex_;
    bool accepted_ = true;
    std::function<void()> launched_;
};

namespace {

/** On GIO's worker thread: answers launches, and lets all other messages pass. */
GDBusMessage* answer_launch(GDBusConnection* bus, GDBusMessage* message, gboolean incoming, gpointer handle) {
    if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL ||
        g_strcmp0(g_dbus_message_get_interface(message), application_interface) != 0 ||
        g_strcmp0(g_dbus_message_get_member(message), "Activate") != 0)
        return message;
    const ObjectPointer<GDBusMessage> call(message);
    const ObjectPointer<GDBusMessage> answer(
        Launches::of(handle).take()
            ? g_dbus_message_new_method_reply(call.get())
            : g_dbus_message_new_method_error_literal(call.get(), ending_error, "the application is ending"));
    g_dbus_connection_send_message(bus, answer.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    return nullptr;
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
    : id_(application_id(program)), launches_(std::make_shared<Launches>(std::move(launched))) {
    if (!session_bus)
        return;
    bus_.reset(G_DBUS_CONNECTION(g_object_ref(session_bus)));
    // Before the name is taken, so that no launch finds the name without an answer.
    filter_ = g_dbus_connection_add_filter(bus_.get(), answer_launch, launches_->make_handle(),
                                           Launches::drop_handle);
    outcome_ = settle();
}

// The bus takes the name back when the process has gone, not a moment before.
SingleInstance::~SingleInstance() {
    launches_->refuse();
    if (bus_)
        g_dbus_connection_remove_filter(bus_.get(), filter_);
}

void SingleInstance::refuse_launches() { launches_->refuse(); }

LaunchOutcome SingleInstance::settle() {
    const auto end = std::chrono::steady_clock::now() + end_limit;
    bool told = false;
    while (!take_name()) {
        if (launch_owner())
            return LaunchOutcome::reached;
        if (!std::exchange(told, true))
            log_line(LogPriority::info, "the application's earlier process is ending: waiting for its end");
        if (std::chrono::steady_clock::now() >= end) {
            log_line(LogPriority::error,
                     "the application's earlier process has not ended in 30 s: not started");
            return LaunchOutcome::held_up;
        }
        std::this_thread::sleep_for(look_interval);
    }
    return LaunchOutcome::runs;
}

/** False when another process has the name. Without an answer the bus is given up. */
bool SingleInstance::take_name() {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", id_.c_str(), do_not_queue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE,
        static_cast<int>(bus_answer_limit.count()), nullptr, &error);
    if (!reply) {
        give_up_session_bus(error->message);
        g_dbus_connection_remove_filter(bus_.get(), filter_);
        bus_.reset();
        return true;
    }
    unsigned answer = 0;
    g_variant_get(reply, "(u)", &answer);
    return answer != name_is_taken;
}

/** Whether the launch has reached the process that has the name; not, when that one is ending or gone. */
bool SingleInstance::launch_owner() const {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus_.get(), id_.c_str(), object_path(id_).c_str(), application_interface, "Activate",
        g_variant_new("(a{sv})", nullptr), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<int>(launch_limit.count()), nullptr, &error);
    if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return reply != nullptr;
    log_line(LogPriority::warning, "the application's running process does not answer the launch");
    return true;
}

} // namespace platform
