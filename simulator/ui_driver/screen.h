/** What a screen reader finds on the screen of one application, and what is waited for there. */
#pragma once

#include <chrono>
#include <functional>
#include <gio/gio.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

/** A number that a widget shows, and its limits. */
struct WidgetValue {
    double current = 0;
    double lowest = 0;
    double highest = 0;
    bool operator==(const WidgetValue&) const = default;
};

/** Where the application keeps a widget on the accessibility bus. */
struct Accessible {
    std::string bus_name;
    std::string path;
};

/** A widget that can be seen. */
struct Widget {
    std::string name = {}; /**< what it says, without blanks around it */
    std::string role = {}; /**< as AT-SPI names it: "push button", "label", "spin button", "dialog" */
    bool focusable = false;
    bool focused = false;
    bool enabled = false;
    bool chosen = false;    /**< it is the selected one of its row */
    std::string label = {}; /**< the name of what labels it */
    std::optional<WidgetValue> value = {};
    int x = 0; /**< place on the screen, in pixels */
    int y = 0;
    int width = 0;
    int height = 0;
    Accessible accessible = {};
};

/** One look at the screen. While a dialog is open it is all that can be used, and all that is listed. */
class Screen {
public:
    explicit Screen(std::vector<Widget> widgets, bool in_front = true, std::vector<Widget> covered = {});
    /** A screen on which nothing could be read, and why. */
    static Screen unreadable(const std::string& reason);

    /** In reading order, those without a name left out. */
    [[nodiscard]] const std::vector<Widget>& widgets() const { return widgets_; }
    /** What a dialog covers: name, role and place. */
    [[nodiscard]] const std::vector<Widget>& covered() const { return covered_; }
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] bool shows(const std::string& text) const { return find(text) != nullptr; }

    /** The widget of that name, one that can be pressed before one that cannot; null when there is none. */
    [[nodiscard]] const Widget* find(const std::string& name) const;
    /** The widget that has the focus; null when none has. */
    [[nodiscard]] const Widget* focused() const;

    /** Whether the application's window is the one that gets the keys. */
    [[nodiscard]] bool in_front() const { return in_front_; }

    /** One line that says everything, the focused widget in brackets. */
    [[nodiscard]] std::string description() const;

private:
    std::vector<Widget> widgets_;
    std::vector<Widget> covered_;
    bool in_front_;
    std::string reason_;
};

/** The widgets as they are listed on the bus: a floating aa{sv}, see org.velmora.Simulator.Ui.Screen. */
GVariant* to_variant(const Screen& screen);

/** A look at the screen that says whether it is as wanted. */
struct Condition {
    std::string wanted; /**< in words, for the one who waited in vain */
    std::function<bool(const Screen&)> is_met;
};

/** The screen did not become what was waited for; says what it showed instead. */
struct NotSeen : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/** A wait that has begun, and lasts as long as the patience of who waits. */
class Wait {
public:
    Wait(Condition condition, std::chrono::milliseconds patience)
        : condition_(std::move(condition)), patience_(patience),
          deadline_(std::chrono::steady_clock::now() + patience) {}

    /** @param screen the newest look at it. @throws NotSeen when it is not as wanted and patience is out. */
    [[nodiscard]] bool is_over(const Screen& screen) const;

private:
    Condition condition_;
    std::chrono::milliseconds patience_;
    std::chrono::steady_clock::time_point deadline_;
};

Condition text_shown(const std::string& text);
/** Something can be read, and not this text. */
Condition text_gone(const std::string& text);
Condition focus_on(const std::string& name);
/** The focused widget shows this number. */
Condition focused_number(int value);

} // namespace simulator
