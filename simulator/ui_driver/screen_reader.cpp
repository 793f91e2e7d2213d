#include "screen_reader.h"

#include <algorithm>
#include <atspi/atspi.h>
#include <gio/gio.h>
#include <map>

namespace simulator {
namespace {

constexpr auto accessible_interface = "org.a11y.atspi.Accessible";

/** One entry of the application's own list of what it has. */
struct Item {
    Accessible accessible;
    std::vector<std::string> children; /**< their paths */
    std::vector<std::string> interfaces;
    std::string name;
    guint32 role = 0;
    guint64 states = 0;

    [[nodiscard]] bool is(AtspiStateType state) const { return ((states >> state) & 1U) != 0; }
    [[nodiscard]] bool has(const std::string& interface) const {
        return std::ranges::find(interfaces, "org.a11y.atspi." + interface) != interfaces.end();
    }
};

/** All that an application has, its root first. */
struct Items {
    std::map<std::string, Item> by_path;
    std::string root;
};

std::string stripped(const char* text) {
    g_autofree char* copy = g_strdup(text);
    return g_strstrip(copy);
}

Item read_item(GVariant* entry) {
    const char* bus_name = nullptr;
    const char* path = nullptr;
    g_autoptr(GVariantIter) children = nullptr;
    g_autoptr(GVariantIter) interfaces = nullptr;
    const char* name = nullptr;
    guint32 role = 0;
    g_autoptr(GVariantIter) states = nullptr;
    g_variant_get(entry, "((&s&o)(so)(so)a(so)as&su&sau)", &bus_name, &path, nullptr, nullptr, nullptr,
                  nullptr, &children, &interfaces, &name, &role, nullptr, &states);
    Item item{.accessible = {bus_name, path},
              .children = {},
              .interfaces = {},
              .name = stripped(name),
              .role = role};
    while (g_variant_iter_next(children, "(&s&o)", nullptr, &path) != FALSE)
        item.children.emplace_back(path);
    for (const char* interface = nullptr; g_variant_iter_next(interfaces, "&s", &interface) != FALSE;)
        item.interfaces.emplace_back(interface);
    guint32 word = 0;
    for (unsigned shift = 0; shift < 64 && g_variant_iter_next(states, "u", &word) != FALSE; shift += 32)
        item.states |= guint64{word} << shift;
    return item;
}

Items read_items(const AccessibilityBus& bus, const std::string& bus_name) {
    Items items;
    constexpr auto type = "(a((so)(so)(so)a(so)assusau))";
    const Accessible cache{bus_name, "/org/a11y/atspi/cache"};
    bus.ask({{cache, "org.a11y.atspi.Cache", "GetItems", nullptr, type, [&](GVariant* answer) {
                  g_autoptr(GVariantIter) entries = nullptr;
                  g_variant_get(answer, type, &entries);
                  for (GVariant* entry = nullptr; (entry = g_variant_iter_next_value(entries)) != nullptr;) {
                      const Value held(entry);
                      Item item = read_item(entry);
                      if (items.root.empty())
                          items.root = item.accessible.path;
                      items.by_path.emplace(item.accessible.path, std::move(item));
                  }
              }}});
    return items;
}

std::vector<std::string> applications(const AccessibilityBus& bus) {
    std::vector<std::string> names;
    const Accessible desktop{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    bus.ask({{desktop, accessible_interface, "GetChildren", nullptr, "(a(so))", [&names](GVariant* answer) {
                  g_autoptr(GVariantIter) each = nullptr;
                  g_variant_get(answer, "(a(so))", &each);
                  for (const char* name = nullptr;
                       g_variant_iter_next(each, "(&s&o)", &name, nullptr) != FALSE;)
                      names.emplace_back(name);
              }}});
    return names;
}

/** What the wanted application has; one that has just ended, or does not answer, must not hide it. */
Items items_of(const AccessibilityBus& bus, const std::string& wanted) {
    LostSight reason("the application is not on the accessibility bus", false);
    for (const std::string& name : applications(bus)) {
        try {
            Items items = read_items(bus, name);
            const auto root = items.by_path.find(items.root);
            if (root != items.by_path.end() &&
                (wanted.empty() ? !root->second.children.empty() : root->second.name == wanted))
                return items;
        } catch (const LostSight& error) {
            reason = error;
        }
    }
    throw LostSight(reason);
}

/** What one look has found so far. */
struct Look {
    struct Found {
        const Item* item;
        int dialog; /**< the dialog that it is in, counted from 1; 0 for the page */
    };
    std::vector<Found> found;
    int dialogs = 0;
    bool in_front = false;
};

void look_below(const Items& items, const Item& parent, int dialog, bool is_window, Look& look) {
    for (const std::string& path : parent.children) {
        const auto found = items.by_path.find(path);
        if (found == items.by_path.end())
            continue;
        const Item& item = found->second;
        if (!is_window && !item.is(ATSPI_STATE_VISIBLE))
            continue;
        look.in_front = look.in_front || item.is(ATSPI_STATE_ACTIVE);
        const int own_dialog = item.is(ATSPI_STATE_MODAL) ? ++look.dialogs : dialog;
        if (!is_window && item.is(ATSPI_STATE_SHOWING) && !item.name.empty())
            look.found.push_back({&item, own_dialog});
        look_below(items, item, own_dialog, false, look);
    }
}

std::string role_name(guint32 role) {
    g_autofree char* name = atspi_role_get_name(static_cast<AtspiRole>(role));
    return name;
}

/** Fills in what the list of items says, and asks for the rest. */
void describe(const Item& item, Widget& widget, Places places, std::vector<Question>& questions) {
    widget.name = item.name;
    widget.role = role_name(item.role);
    widget.focusable = item.is(ATSPI_STATE_FOCUSABLE);
    widget.focused = item.is(ATSPI_STATE_FOCUSED);
    widget.enabled = item.is(ATSPI_STATE_ENABLED);
    widget.accessible = item.accessible;
    if (places == Places::asked && item.has("Component"))
        questions.push_back(
            {item.accessible, "org.a11y.atspi.Component", "GetExtents",
             g_variant_new("(u)", ATSPI_COORD_TYPE_SCREEN), "((iiii))", [&widget](GVariant* answer) {
                 g_variant_get(answer, "((iiii))", &widget.x, &widget.y, &widget.width, &widget.height);
             }});
    if (item.role == ATSPI_ROLE_SPIN_BUTTON && item.has("Value"))
        questions.push_back({item.accessible, "org.freedesktop.DBus.Properties", "GetAll",
                             g_variant_new("(s)", "org.a11y.atspi.Value"), "(a{sv})",
                             [&value = widget.value.emplace()](GVariant* answer) {
                                 g_autoptr(GVariant) numbers = g_variant_get_child_value(answer, 0);
                                 g_variant_lookup(numbers, "CurrentValue", "d", &value.current);
                                 g_variant_lookup(numbers, "MinimumValue", "d", &value.lowest);
                                 g_variant_lookup(numbers, "MaximumValue", "d", &value.highest);
                             }});
}

} // namespace

Screen ScreenReader::read(const std::string& application, Places places) const {
    try {
        const Items items = items_of(bus_, application);
        Look look;
        look_below(items, items.by_path.at(items.root), 0, true, look);
        const auto shown =
            std::stable_partition(look.found.begin(), look.found.end(),
                                  [&look](const auto& found) { return found.dialog == look.dialogs; }) -
            look.found.begin();
        std::vector<Widget> widgets(look.found.size());
        std::vector<Question> questions;
        for (std::size_t i = 0; i < widgets.size(); ++i)
            describe(*look.found[i].item, widgets[i], places, questions);
        bus_.ask(questions);
        const auto first_covered = widgets.begin() + shown;
        return Screen(std::vector(widgets.begin(), first_covered), look.in_front,
                      std::vector(first_covered, widgets.end()));
    } catch (const LostSight& error) {
        return Screen::unreadable(error.what());
    }
}

void ScreenReader::activate(const Widget& widget) const {
    const std::string refusal = "'" + widget.name + "' cannot be activated";
    try {
        bus_.ask({{widget.accessible, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0), "(b)",
                   [&refusal](GVariant* answer) {
                       gboolean done = FALSE;
                       g_variant_get(answer, "(b)", &done);
                       if (done == FALSE)
                           throw LostSight(refusal, false);
                   }}});
    } catch (const LostSight& error) {
        if (!error.is_late())
            throw std::runtime_error(refusal);
    }
}

} // namespace simulator
