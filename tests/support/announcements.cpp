#include "announcements.h"

#include "base/bus.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace simulator {
namespace {

using namespace std::string_view_literals;

constexpr auto focused = "object:state-changed:focused"sv;
constexpr auto showing = "object:state-changed:showing"sv;
constexpr auto renamed = "object:property-change:accessible-name"sv;
constexpr std::array events = {focused, showing, renamed};

std::string taken(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owned(text, g_free);
    return text == nullptr ? "" : text;
}

} // namespace

Announcements::Announcements() : listener_(nullptr, g_object_unref) {
    atspi_init();
    const auto heard = +[](AtspiEvent* event, void* self) {
        static_cast<Announcements*>(self)->hear(*event);
        g_boxed_free(ATSPI_TYPE_EVENT, event);
    };
    listener_.reset(atspi_event_listener_new(heard, this, nullptr));
    for (const auto event : events)
        atspi_event_listener_register(listener_.get(), event.data(), nullptr);
}

Announcements::~Announcements() {
    for (const auto event : events)
        atspi_event_listener_deregister(listener_.get(), event.data(), nullptr);
}

std::size_t Announcements::count() const {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    return said_.size();
}

std::vector<std::string> Announcements::take() { return std::exchange(said_, {}); }

void announce_screen_reader(bool is_there) {
    g_autoptr(GError) error = nullptr;
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    const BusConnection session = connect_to_bus(address != nullptr ? address : "");
    const Value answer(g_dbus_connection_call_sync(
        session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled",
                      g_variant_new_boolean(is_there ? TRUE : FALSE)),
        nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error));
    if (!answer)
        throw std::runtime_error(std::string("no accessibility bus: ") + error->message);
}

void Announcements::hear(const AtspiEvent& event) {
    const std::string role = taken(atspi_accessible_get_role_name(event.source, nullptr));
    const bool begins = event.detail1 == 1;
    if (event.type == focused && begins)
        focused_role_ = role;
    if ((event.type == focused && begins) || (event.type == showing && begins && role == "dialog") ||
        (event.type == renamed && (role == focused_role_ || role == "label")))
        said_.push_back(role + " " + taken(atspi_accessible_get_name(event.source, nullptr)));
}

} // namespace simulator
