#include "operator.h"

#include <thread>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto look_interval = 50ms;

std::string quoted(const std::string& text) { return "'" + text + "'"; }

} // namespace

Operator::Operator(std::string application, std::chrono::milliseconds patience)
    : application_(std::move(application)), patience_(patience), display_(open_display()) {
    announce_screen_reader();
    connect_to_accessibility_bus();
}

void Operator::press(const std::string& key, int times) {
    for (int time = 0; time < times; ++time) {
        press_key(display_, key);
        keys_pressed_.push_back(key);
    }
}

void Operator::activate(const std::string& name) {
    const Screen& screen = wait_for(name);
    station::activate(*screen.find(name));
}

std::optional<Widget> Operator::focused() const {
    const Screen now = screen();
    const Widget* const widget = now.focused();
    return widget != nullptr ? std::optional(*widget) : std::nullopt;
}

bool Operator::is_focusable(const std::string& name) { return wait_for(name).find(name)->focusable; }

const Screen& Operator::wait_until(const std::string& wanted,
                                   const std::function<bool(const Screen&)>& is_as_wanted) {
    return wait_until(wanted, is_as_wanted, patience_);
}

const Screen& Operator::wait_until(const std::string& wanted,
                                   const std::function<bool(const Screen&)>& is_as_wanted,
                                   std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        seen_ = screen();
        if (is_as_wanted(seen_))
            return seen_;
        if (followed_ != nullptr && !followed_->process())
            throw NotSeen("the application has ended; the screen did not show " + wanted);
        if (std::chrono::steady_clock::now() >= deadline)
            throw NotSeen("waited " + std::to_string(patience.count()) + " ms for " + wanted +
                          "; the screen shows: " + seen_.description());
        std::this_thread::sleep_for(look_interval);
    }
}

const Screen& Operator::wait_for(const std::string& text) { return wait_for(text, patience_); }

const Screen& Operator::wait_for(const std::string& text, std::chrono::milliseconds patience) {
    return wait_until(
        quoted(text), [&text](const Screen& screen) { return screen.shows(text); }, patience);
}

const Screen& Operator::wait_until_gone(const std::string& text) {
    return wait_until(quoted(text) + " to go", [&text](const Screen& screen) {
        return !screen.widgets().empty() && !screen.shows(text);
    });
}

const Screen& Operator::wait_for_focus(const std::string& name) {
    return wait_until("the focus on " + quoted(name), [&name](const Screen& screen) {
        const Widget* const focused = screen.focused();
        return focused != nullptr && focused->name == name;
    });
}

const Screen& Operator::wait_for_value(int value) {
    return wait_until("the focused value " + std::to_string(value), [value](const Screen& screen) {
        const Widget* const focused = screen.focused();
        return focused != nullptr && focused->value && static_cast<int>(focused->value->current) == value;
    });
}

} // namespace station
