#include "condition.h"

namespace simulator {
namespace {

std::string quoted(const std::string& text) { return "'" + text + "'"; }

} // namespace

bool Wait::is_over(const Screen& screen) const {
    if (condition_.is_met(screen))
        return true;
    if (std::chrono::steady_clock::now() >= deadline_)
        throw NotSeen("waited " + std::to_string(patience_.count()) + " ms for " + condition_.wanted +
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
