#include "screen.h"

#include <algorithm>
#include <span>

namespace simulator {
namespace {

std::string quoted(const std::string& text) { return "'" + text + "'"; }

int middle(const Widget& widget) { return widget.y + widget.height / 2; }

std::string text_of(const Widget& widget) {
    if (!widget.value)
        return widget.name;
    std::string number = std::to_string(static_cast<int>(widget.value->current));
    return widget.name == number ? number : widget.name + ": " + number;
}

/** Sorts widgets in reading order: rows from the top, each row from the left. */
void sort_for_reading(std::vector<Widget>& widgets) {
    std::ranges::stable_sort(widgets, {}, [](const Widget& widget) { return middle(widget); });
    for (auto row = widgets.begin(); row != widgets.end();) {
        const int bottom = row->y + row->height;
        const auto next = std::find_if(row, widgets.end(),
                                       [bottom](const Widget& widget) { return middle(widget) >= bottom; });
        const auto end = next == row ? row + 1 : next;
        std::ranges::stable_sort(row, end, {}, &Widget::x);
        row = end;
    }
}

GVariant* to_tree(std::span<const Widget> widgets);

GVariant* to_dictionary(const Widget& widget, std::span<const Widget> children) {
    GVariantBuilder built;
    g_variant_builder_init(&built, G_VARIANT_TYPE_VARDICT);
    const auto add = [&built](const char* key, const char* format, auto value) {
        g_variant_builder_add(&built, "{sv}", key, g_variant_new(format, value));
    };
    add("name", "s", widget.name.c_str());
    add("role", "s", widget.role.c_str());
    add("focusable", "b", widget.focusable);
    add("focused", "b", widget.focused);
    add("enabled", "b", widget.enabled);
    if (widget.value) {
        add("value", "d", widget.value->current);
        add("lowest", "d", widget.value->lowest);
        add("highest", "d", widget.value->highest);
    }
    add("x", "i", widget.x);
    add("y", "i", widget.y);
    add("width", "i", widget.width);
    add("height", "i", widget.height);
    if (!children.empty())
        g_variant_builder_add(&built, "{sv}", "children", to_tree(children));
    return g_variant_builder_end(&built);
}

/** Widgets after a dialog are its children. */
GVariant* to_tree(std::span<const Widget> widgets) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    for (std::size_t i = 0; i < widgets.size(); ++i) {
        const bool is_dialog = widgets[i].role == "dialog";
        const auto children = is_dialog ? widgets.subspan(i + 1) : widgets.first(0);
        g_variant_builder_add_value(&list, to_dictionary(widgets[i], children));
        if (is_dialog)
            break;
    }
    return g_variant_builder_end(&list);
}

} // namespace

Screen::Screen(std::vector<Widget> widgets, bool in_front, std::vector<Widget> covered)
    : widgets_(std::move(widgets)), covered_(std::move(covered)), in_front_(in_front) {
    std::erase_if(widgets_, [](const Widget& widget) { return widget.name.empty(); });
    // An open dialog comes first and stays there: sorted by its area, the whole window, it would be in the middle.
    const auto page =
        std::ranges::find_if(widgets_, [](const Widget& widget) { return widget.role != "dialog"; });
    std::vector<Widget> in_order(page, widgets_.end());
    sort_for_reading(in_order);
    std::ranges::move(in_order, page);
}

Screen Screen::unreadable(const std::string& reason) {
    Screen screen({}, false);
    screen.reason_ = reason;
    return screen;
}

std::vector<std::string> Screen::texts() const {
    std::vector<std::string> texts;
    std::ranges::transform(widgets_, std::back_inserter(texts), text_of);
    return texts;
}

const Widget* Screen::find(const std::string& name) const {
    const Widget* found = nullptr;
    for (const Widget& widget : widgets_) {
        if (widget.name != name)
            continue;
        if (widget.role == "push button")
            return &widget;
        if (found == nullptr)
            found = &widget;
    }
    return found;
}

const Widget* Screen::focused() const {
    const auto found = std::ranges::find_if(widgets_, &Widget::focused);
    return found == widgets_.end() ? nullptr : &*found;
}

std::string Screen::description() const {
    std::string line;
    for (const Widget& widget : widgets_) {
        line += line.empty() ? "" : " | ";
        line += widget.focused ? "[" + text_of(widget) + "]" : text_of(widget);
    }
    if (!line.empty())
        return line;
    return "nothing readable" + (reason_.empty() ? "" : " (" + reason_ + ")");
}

GVariant* to_variant(const Screen& screen) { return to_tree(screen.widgets()); }

bool Wait::is_over(const Screen& screen) const {
    if (condition_.is_met(screen))
        return true;
    if (std::chrono::steady_clock::now() >= deadline_)
        throw NotSeen("waited " + std::to_string(limit_.count()) + " ms for " + condition_.wanted +
                      "; the screen shows: " + screen.description());
    return false;
}

Condition text_shown(const std::string& text) {
    return {quoted(text), [text](const Screen& screen) { return screen.shows(text); }};
}

Condition text_gone(const std::string& text) {
    return {quoted(text) + " to go",
            [text](const Screen& screen) { return !screen.widgets().empty() && !screen.shows(text); }};
}

Condition focus_on(const std::string& name) {
    return {"the focus on " + quoted(name), [name](const Screen& screen) {
                const Widget* const focused = screen.focused();
                return focused != nullptr && focused->name == name;
            }};
}

Condition focused_number(int value) {
    return {"the focused value " + std::to_string(value), [value](const Screen& screen) {
                const Widget* const focused = screen.focused();
                return focused != nullptr && focused->value &&
                       static_cast<int>(focused->value->current) == value;
            }};
}

} // namespace simulator
