#include "bus_monitor.h"

#include "base/bus.h"

#include <memory>
#include <stdexcept>

namespace bench {
namespace {

struct Message {
    std::string member;
    Clock::time_point time;
};

void free_message(gpointer message) { delete static_cast<Message*>(message); }

// Runs on GDBus's worker thread, so that the time is exact even if the measuring thread is busy.
GDBusMessage* on_message(GDBusConnection* /*bus*/, GDBusMessage* message, gboolean incoming,
                         gpointer messages) {
    const char* const member = g_dbus_message_get_member(message);
    if (incoming == FALSE || member == nullptr)
        return message;
    g_async_queue_push(static_cast<GAsyncQueue*>(messages), new Message{member, Clock::now()});
    g_object_unref(message);
    return nullptr; // a monitor must not reply
}

} // namespace

BusMonitor::BusMonitor() : messages_(g_async_queue_new_full(free_message)) {
    // A private connection, as a monitor can do nothing else on the bus.
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    bus_ = simulator::connect_to_bus(address != nullptr ? address : "");
    filter_ = g_dbus_connection_add_filter(bus_.get(), on_message, messages_, nullptr);
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Monitoring",
        "BecomeMonitor", g_variant_new("(asu)", nullptr, 0), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        &error);
    if (reply == nullptr)
        throw std::runtime_error(std::string("the system bus cannot be monitored: ") + error->message);
}

BusMonitor::~BusMonitor() {
    g_dbus_connection_remove_filter(bus_.get(), filter_);
    g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
    g_async_queue_unref(messages_);
}

Clock::time_point BusMonitor::next(const std::string& member) {
    for (;;) {
        const std::unique_ptr<Message> message(
            static_cast<Message*>(g_async_queue_timeout_pop(messages_, 10 * G_TIME_SPAN_SECOND)));
        if (message == nullptr)
            throw std::runtime_error(member + " does not pass the system bus");
        if (message->member == member)
            return message->time;
    }
}

} // namespace bench
