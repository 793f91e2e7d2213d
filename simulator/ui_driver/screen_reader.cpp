#include "screen_reader.h"

#include "base/bus.h"

#include <algorithm>
#include <atspi/atspi.h>
#include <map>

namespace simulator {

struct Question {
    Accessible target;
    const char* interface;
    const char* method;
    GVariant* arguments;                        /**< a floating tuple, or null for none */
    const char* answer_type;                    /**< the type of the answer's tuple */
    std::function<void(GVariant* answer)> take; /**< handles the answer */
};

/** One entry of the application's list of accessible objects. */
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

/** All accessible objects of an application. */
struct Items {
    std::map<std::string, Item> by_path;
    std::string root;

    [[nodiscard]] bool are_of(const std::string& application) const {
        const auto found = by_path.find(root);
        return found != by_path.end() &&
               (application.empty() ? !found->second.children.empty() : found->second.name == application);
    }
};

namespace {

constexpr auto accessible_interface = "org.a11y.atspi.Accessible";
constexpr auto items_type = "(a((so)(so)(so)a(so)assusau))";
constexpr std::chrono::milliseconds start_limit{5000}; // for the launcher of the accessibility bus

/** Whether the call was cancelled, because the reader was destroyed. */
bool is_cancelled(const GError* error) {
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

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

void take_items(GVariant* answer, Items& items) {
    g_autoptr(GVariantIter) entries = nullptr;
    g_variant_get(answer, items_type, &entries);
    items = {};
    while (GVariant* const entry = g_variant_iter_next_value(entries)) {
        const Value held(entry);
        Item item = read_item(entry);
        if (items.root.empty())
            items.root = item.accessible.path;
        items.by_path.emplace(item.accessible.path, std::move(item));
    }
}

/** The visible objects, each with its dialog. */
struct Shown {
    struct Found {
        const Item* item;
        int dialog; /**< counted from 1; 0 for the page */
    };
    std::vector<Found> found;
    int dialogs = 0;
    bool in_front = false;
};

void look_below(const Items& items, const Item& parent, int dialog, bool is_window, Shown& shown) {
    for (const std::string& path : parent.children) {
        const auto found = items.by_path.find(path);
        if (found == items.by_path.end())
            continue;
        const Item& item = found->second;
        if (!is_window && !item.is(ATSPI_STATE_VISIBLE))
            continue;
        shown.in_front = shown.in_front || item.is(ATSPI_STATE_ACTIVE);
        const int own_dialog = item.is(ATSPI_STATE_MODAL) ? ++shown.dialogs : dialog;
        if (!is_window && item.is(ATSPI_STATE_SHOWING) && !item.name.empty())
            shown.found.push_back({&item, own_dialog});
        look_below(items, item, own_dialog, false, shown);
    }
}

std::string role_name(guint32 role) {
    g_autofree char* name = atspi_role_get_name(static_cast<AtspiRole>(role));
    return name;
}

/** The name of the label in a widget's relations; "" if there is none. */
std::string label_in(const Items& items, GVariant* relations) {
    g_autoptr(GVariantIter) each = nullptr;
    g_variant_get(relations, "(a(ua(so)))", &each);
    std::string label;
    guint32 type = 0;
    for (GVariantIter* targets = nullptr; g_variant_iter_loop(each, "(ua(so))", &type, &targets) != FALSE;) {
        const char* path = nullptr;
        while (type == ATSPI_RELATION_LABELLED_BY &&
               g_variant_iter_next(targets, "(&s&o)", nullptr, &path) != FALSE)
            label += items.by_path.contains(path) ? items.by_path.at(path).name : "?";
    }
    return label;
}

/** Fills in the widget from the item, and queues requests for the rest. */
void ask_about(const Items& items, const Item& item, Widget& widget, Order order,
               std::vector<Question>& questions) {
    widget.name = item.name;
    widget.role = role_name(item.role);
    widget.focusable = item.is(ATSPI_STATE_FOCUSABLE);
    widget.focused = item.is(ATSPI_STATE_FOCUSED);
    widget.enabled = item.is(ATSPI_STATE_ENABLED) && item.is(ATSPI_STATE_SENSITIVE);
    widget.chosen = item.is(ATSPI_STATE_SELECTED);
    widget.accessible = item.accessible;
    if (order == Order::screen && item.has("Component"))
        questions.push_back(
            {item.accessible, "org.a11y.atspi.Component", "GetExtents",
             g_variant_new("(u)", ATSPI_COORD_TYPE_SCREEN), "((iiii))", [&widget](GVariant* answer) {
                 g_variant_get(answer, "((iiii))", &widget.x, &widget.y, &widget.width, &widget.height);
             }});
    if (order == Order::screen && item.role == ATSPI_ROLE_PUSH_BUTTON)
        questions.push_back(
            {item.accessible, accessible_interface, "GetRelationSet", nullptr, "(a(ua(so)))",
             [&items, &widget](GVariant* answer) { widget.label = label_in(items, answer); }});
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

ScreenReader::ScreenReader(std::chrono::milliseconds answer_limit) : answer_limit_(answer_limit) {}

ScreenReader::~ScreenReader() { g_cancellable_cancel(cancel_.get()); }

void ScreenReader::open(const std::string& address, const Opened& opened) {
    const auto on_opened = +[](GObject* /*source*/, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Opened> held(static_cast<Opened*>(data));
        g_autoptr(GError) error = nullptr;
        BusConnection connection(g_dbus_connection_new_for_address_finish(result, &error));
        if (!is_cancelled(error))
            (*held)(std::move(connection), error);
    };
    g_dbus_connection_new_for_address(address.c_str(), message_bus, nullptr, cancel_.get(), on_opened,
                                      std::make_unique<Opened>(opened).release());
}

void ScreenReader::call(GDBusConnection* bus, const Question& question, const Answered& answered) {
    const auto on_answer = +[](GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Answered> held(static_cast<Answered*>(data));
        g_autoptr(GError) error = nullptr;
        const Value answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
        if (!is_cancelled(error))
            (*held)(answer.get(), error);
    };
    const auto limit = bus == session_.get() ? start_limit : answer_limit_;
    g_dbus_connection_call(bus, question.target.bus_name.c_str(), question.target.path.c_str(),
                           question.interface, question.method, question.arguments,
                           G_VARIANT_TYPE(question.answer_type), G_DBUS_CALL_FLAGS_NONE,
                           static_cast<int>(limit.count()), cancel_.get(), on_answer,
                           std::make_unique<Answered>(answered).release());
}

void ScreenReader::announce(const Done& done) {
    if (connection_ && g_dbus_connection_is_closed(connection_.get()) == FALSE)
        return done(nullptr);
    g_autoptr(GError) error = nullptr;
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (address == nullptr)
        return done(error);
    open(address, [this, done](BusConnection session, const GError* open_error) {
        if (open_error != nullptr)
            return done(open_error);
        session_ = std::move(session);
        const Accessible launcher{"org.a11y.Bus", "/org/a11y/bus"};
        auto* const set =
            g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled", g_variant_new_boolean(TRUE));
        call(session_.get(), {launcher, "org.freedesktop.DBus.Properties", "Set", set, "()", nullptr},
             [](GVariant* /*answer*/, const GError* /*error*/) {}); // if this fails, so does GetAddress
        call(session_.get(), {launcher, "org.a11y.Bus", "GetAddress", nullptr, "(s)", nullptr},
             [this, done](GVariant* answer, const GError* call_error) {
                 if (call_error != nullptr)
                     return done(call_error);
                 const char* path = nullptr;
                 g_variant_get(answer, "(&s)", &path);
                 open(path, [this, done](BusConnection connection, const GError* failure) {
                     connection_ = std::move(connection);
                     done(failure);
                 });
             });
    });
}

void ScreenReader::ask(const std::vector<Question>& questions, const Done& done) {
    struct Open {
        std::size_t count;
        std::unique_ptr<GError, Release<g_error_free>> failure;
    };
    if (questions.empty())
        return done(nullptr);
    const auto open = std::make_shared<Open>(Open{questions.size(), nullptr});
    for (const Question& question : questions)
        call(connection_.get(), question,
             [open, done, take = question.take](GVariant* answer, const GError* error) {
                 if (error == nullptr)
                     take(answer);
                 else if (!open->failure)
                     open->failure.reset(g_error_copy(error));
                 if (--open->count == 0)
                     done(open->failure.get());
             });
}

/** The state of one `look` call. */
struct ScreenReader::Look {
    std::string application;
    Order order;
    Seen seen;
    std::vector<std::string> applications;
    std::string reason = "the application is not on the accessibility bus";
    Items items;
    std::vector<Widget> widgets;
};

void ScreenReader::look(const std::string& application, Order order, const Seen& seen) {
    const auto look = std::make_shared<Look>();
    look->application = application;
    look->order = order;
    look->seen = seen;
    announce([this, look](const GError* failure) {
        if (failure != nullptr)
            look->seen(Screen::unreadable(failure->message));
        else
            ask_applications(look);
    });
}

void ScreenReader::ask_applications(const std::shared_ptr<Look>& look) {
    const Accessible desktop{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    const auto take = [look](GVariant* answer) {
        g_autoptr(GVariantIter) each = nullptr;
        g_variant_get(answer, "(a(so))", &each);
        for (const char* name = nullptr; g_variant_iter_next(each, "(&s&o)", &name, nullptr) != FALSE;)
            look->applications.emplace_back(name);
    };
    ask({{desktop, accessible_interface, "GetChildren", nullptr, "(a(so))", take}},
        [this, look](const GError* failure) {
            if (failure != nullptr)
                look->seen(Screen::unreadable(failure->message));
            else
                read_items(look, 0);
        });
}

/** Finds the wanted application, skipping applications that have exited or do not answer. */
void ScreenReader::read_items(const std::shared_ptr<Look>& look, std::size_t index) {
    if (index == look->applications.size())
        return look->seen(Screen::unreadable(look->reason));
    const Accessible cache{look->applications[index], "/org/a11y/atspi/cache"};
    const auto take = [look](GVariant* answer) { take_items(answer, look->items); };
    ask({{cache, "org.a11y.atspi.Cache", "GetItems", nullptr, items_type, take}},
        [this, look, index](const GError* failure) {
            if (failure != nullptr)
                look->reason = failure->message;
            if (failure == nullptr && look->items.are_of(look->application))
                describe(look);
            else
                read_items(look, index + 1);
        });
}

void ScreenReader::describe(const std::shared_ptr<Look>& look) {
    Shown shown;
    look_below(look->items, look->items.by_path.at(look->items.root), 0, true, shown);
    const auto uncovered =
        std::stable_partition(shown.found.begin(), shown.found.end(),
                              [&shown](const auto& found) { return found.dialog == shown.dialogs; }) -
        shown.found.begin();
    look->widgets.resize(shown.found.size());
    std::vector<Question> questions;
    for (std::size_t i = 0; i < shown.found.size(); ++i)
        ask_about(look->items, *shown.found[i].item, look->widgets[i], look->order, questions);
    ask(questions, [look, uncovered, in_front = shown.in_front](const GError* failure) {
        if (failure != nullptr)
            return look->seen(Screen::unreadable(failure->message));
        const auto first_covered = look->widgets.begin() + uncovered;
        look->seen(Screen(std::vector(look->widgets.begin(), first_covered), in_front,
                          std::vector(first_covered, look->widgets.end())));
    });
}

void ScreenReader::activate(const Widget& widget, const Activated& activated) {
    const auto refusal = std::make_shared<std::string>();
    const std::string text = "'" + widget.name + "' cannot be activated";
    const auto take = [refusal, text](GVariant* answer) {
        gboolean done = FALSE;
        g_variant_get(answer, "(b)", &done);
        if (done == FALSE)
            *refusal = text;
    };
    ask({{widget.accessible, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0), "(b)", take}},
        [refusal, text, activated](const GError* failure) {
            const bool is_late = g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE;
            activated(failure != nullptr && !is_late ? text : *refusal);
        });
}

} // namespace simulator
