#include "bus_watch.h"

#include "base/bus.h"

#include <stdexcept>

namespace bench {
namespace {

constexpr std::chrono::seconds patience(10);

} // namespace

BusWatch::BusWatch() {
    // Of its own: who watches can do nothing else on the bus any more.
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    bus_ = simulator::connect_to_bus(address != nullptr ? address : "");
    filter_ = g_dbus_connection_add_filter(bus_.get(), on_message, this, nullptr);
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Monitoring",
        "BecomeMonitor", g_variant_new("(asu)", nullptr, 0), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        &error);
    if (reply == nullptr)
        throw std::runtime_error(std::string("the system bus cannot be watched: ") + error->message);
}

BusWatch::~BusWatch() {
    g_dbus_connection_remove_filter(bus_.get(), filter_);
    g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
}

// On GDBus's own thread, which nothing else of the measuring holds up.
GDBusMessage* BusWatch::on_message(GDBusConnection* /*bus*/, GDBusMessage* message, gboolean incoming,
                                   gpointer self) {
    const char* const member = g_dbus_message_get_member(message);
    if (incoming == FALSE || member == nullptr)
        return message;
    auto& watch = *static_cast<BusWatch*>(self);
    {
        const std::lock_guard lock(watch.mutex_);
        watch.messages_.push_back({member, Clock::now()});
    }
    watch.came_.notify_one();
    g_object_unref(message);
    return nullptr; // a monitor answers nobody
}

Clock::time_point BusWatch::next(const std::string& member) {
    const auto deadline = Clock::now() + patience;
    std::unique_lock lock(mutex_);
    for (;;) {
        if (!came_.wait_until(lock, deadline, [this] { return !messages_.empty(); }))
            throw std::runtime_error(member + " does not pass the system bus");
        const Message message = std::move(messages_.front());
        messages_.pop_front();
        if (message.member == member)
            return message.moment;
    }
}

} // namespace bench
