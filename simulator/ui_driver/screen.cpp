#include "screen.h"

#include <algorithm>

namespace simulator {
namespace {

int middle(const Widget& widget) { return widget.y + widget.height / 2; }

std::string text_of(const Widget& widget) {
    if (!widget.value)
        return widget.name;
    std::string number = std::to_string(static_cast<int>(widget.value->current));
    return widget.name == number ? number : widget.name + ": " + number;
}

/** Puts widgets in reading order: row by row from the top, each row from the left. */
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

} // namespace

Screen::Screen(std::vector<Widget> widgets, bool in_front, std::vector<Widget> covered)
    : widgets_(std::move(widgets)), covered_(std::move(covered)), in_front_(in_front) {
    std::erase_if(widgets_, [](const Widget& widget) { return widget.name.empty(); });
    // A dialog's area is the whole window; its title is read first.
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
    return "nothing that can be read" + (reason_.empty() ? "" : " (" + reason_ + ")");
}

} // namespace simulator
