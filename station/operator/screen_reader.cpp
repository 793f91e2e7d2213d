#include "screen.h"

#include <array>
#include <atspi/atspi.h>
#include <gio/gio.h>
#include <stdexcept>

namespace station {
namespace {

constexpr int answer_milliseconds = 1000;

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

std::string taken(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owned(text, g_free);
    return text != nullptr ? g_strstrip(text) : "";
}

/** The application stopped answering, or a widget went away, in the middle of a look. */
class LostSight : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** Calls libatspi with an error to fill and throws when it was filled. */
template <typename Call>
auto ask(Call call) {
    g_autoptr(GError) error = nullptr;
    auto answer = call(&error);
    if (error != nullptr)
        throw LostSight(error->message);
    return answer;
}

class States {
public:
    explicit States(AtspiAccessible* accessible) : states_(atspi_accessible_get_state_set(accessible)) {}
    [[nodiscard]] bool has(AtspiStateType state) const {
        return states_ && atspi_state_set_contains(states_.get(), state) != 0;
    }

private:
    Owned<AtspiStateSet> states_;
};

std::optional<WidgetValue> value_of(AtspiAccessible* accessible) {
    const Owned<AtspiValue> value(atspi_accessible_get_value_iface(accessible));
    if (!value)
        return std::nullopt;
    return WidgetValue{
        ask([&](GError** error) { return atspi_value_get_current_value(value.get(), error); }),
        ask([&](GError** error) { return atspi_value_get_minimum_value(value.get(), error); }),
        ask([&](GError** error) { return atspi_value_get_maximum_value(value.get(), error); })};
}

void read_place(Widget& widget) {
    const Owned<AtspiComponent> component(atspi_accessible_get_component_iface(widget.accessible.get()));
    if (!component)
        return;
    const std::unique_ptr<AtspiRect, decltype(&g_free)> area(
        ask([&](GError** error) {
            return atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, error);
        }),
        g_free);
    widget.x = area->x;
    widget.y = area->y;
    widget.width = area->width;
    widget.height = area->height;
}

Widget read_widget(const std::shared_ptr<AtspiAccessible>& accessible, const States& states) {
    Widget widget;
    widget.accessible = accessible;
    widget.name =
        taken(ask([&](GError** error) { return atspi_accessible_get_name(accessible.get(), error); }));
    widget.role =
        taken(ask([&](GError** error) { return atspi_accessible_get_role_name(accessible.get(), error); }));
    widget.focusable = states.has(ATSPI_STATE_FOCUSABLE);
    widget.focused = states.has(ATSPI_STATE_FOCUSED);
    widget.enabled = states.has(ATSPI_STATE_ENABLED);
    if (widget.role == "spin button")
        widget.value = value_of(accessible.get());
    read_place(widget);
    return widget;
}

std::vector<std::shared_ptr<AtspiAccessible>> children_of(AtspiAccessible* parent) {
    const int count = ask([&](GError** error) { return atspi_accessible_get_child_count(parent, error); });
    std::vector<std::shared_ptr<AtspiAccessible>> children;
    for (int index = 0; index < count; ++index) {
        Owned<AtspiAccessible> child(
            ask([&](GError** error) { return atspi_accessible_get_child_at_index(parent, index, error); }));
        if (child)
            children.emplace_back(std::move(child));
    }
    return children;
}

/** What one look has found so far. */
struct Look {
    struct Found {
        Widget widget;
        int dialog; /**< the dialog that it is in, counted from 1; 0 for the page */
    };
    std::vector<Found> found;
    int dialogs = 0;
    bool in_front = false;
};

void read_below(AtspiAccessible* parent, int dialog, Look& look) {
    for (const auto& child : children_of(parent)) {
        const States states(child.get());
        if (!states.has(ATSPI_STATE_VISIBLE))
            continue;
        look.in_front = look.in_front || states.has(ATSPI_STATE_ACTIVE);
        const int own_dialog = states.has(ATSPI_STATE_MODAL) ? ++look.dialogs : dialog;
        if (states.has(ATSPI_STATE_SHOWING))
            look.found.push_back({read_widget(child, states), own_dialog});
        read_below(child.get(), own_dialog, look);
    }
}

/** The application's entry among the desktop's children; the desktop's own list is never remembered. */
std::shared_ptr<AtspiAccessible> find_application(const std::string& name) {
    const Owned<AtspiAccessible> desktop(atspi_get_desktop(0));
    atspi_accessible_set_cache_mask(desktop.get(), ATSPI_CACHE_NONE);
    for (const auto& application : children_of(desktop.get())) {
        atspi_accessible_set_cache_mask(application.get(), ATSPI_CACHE_NONE);
        g_autoptr(GError) error = nullptr; // one that has just ended must not hide the others
        if (taken(atspi_accessible_get_name(application.get(), &error)) == name)
            return application;
    }
    return nullptr;
}

/** Lets libatspi work off what the bus has told it. */
void dispatch_events() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

} // namespace

void connect_to_accessibility_bus() {
    if (atspi_init() > 1)
        throw std::runtime_error("no accessibility bus");
    atspi_set_timeout(answer_milliseconds, answer_milliseconds);
}

Screen read_screen(const std::string& application) {
    dispatch_events();
    try {
        const auto root = find_application(application);
        if (!root)
            return Screen::unreadable("the application is not on the accessibility bus");
        Look look;
        for (const auto& window : children_of(root.get())) {
            const States states(window.get());
            look.in_front = look.in_front || states.has(ATSPI_STATE_ACTIVE);
            read_below(window.get(), 0, look);
        }
        std::vector<Widget> widgets;
        for (auto& [widget, dialog] : look.found)
            if (dialog == look.dialogs)
                widgets.push_back(std::move(widget));
        return Screen(std::move(widgets), look.in_front);
    } catch (const LostSight& error) {
        return Screen::unreadable(error.what());
    }
}

void activate(const Widget& widget) {
    const Owned<AtspiAction> action(atspi_accessible_get_action_iface(widget.accessible.get()));
    g_autoptr(GError) error = nullptr;
    if (!action || (atspi_action_do_action(action.get(), 0, &error) == FALSE && error == nullptr))
        throw std::runtime_error("'" + widget.name + "' cannot be activated");
}

void announce_screen_reader() {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (bus != nullptr) {
        g_autoptr(GVariant) answer = g_dbus_connection_call_sync(
            bus, "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
            g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled", g_variant_new_boolean(TRUE)),
            nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
        if (answer != nullptr)
            return;
    }
    throw std::runtime_error(std::string("no accessibility bus: ") + error->message);
}

} // namespace station
