/** The screen of one application as a screen reader sees it, and conditions to wait for. */
#pragma once

#include <chrono>
#include <functional>
#include <gio/gio.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

/** The number that a widget shows, and its limits. */
struct WidgetValue {
    double current = 0;
    double lowest = 0;
    double highest = 0;
    bool operator==(const WidgetValue&) const = default;
};

/** The address of a widget on the accessibility bus. */
struct Accessible {
    std::string bus_name;
    std::string path;
};

/** A visible widget. */
struct Widget {
    std::string name = {}; /**< its text, trimmed */
    std::string role = {}; /**< the AT-SPI name: "push button", "label", "spin button", "dialog" */
    bool focusable = false;
    bool focused = false;
    bool enabled = false;
    bool chosen = false;    /**< it is the selected widget of its row */
    std::string label = {}; /**< the name of its label */
    std::optional<WidgetValue> value = {};
    int x = 0; /**< position on the screen, in pixels */
    int y = 0;
    int width = 0;
    int height = 0;
    Accessible accessible = {};
};

/** A snapshot of the screen. While a dialog is open, only the dialog's widgets are listed. */
class Screen {
public:
    explicit Screen(std::vector<Widget> widgets, bool in_front = true, std::vector<Widget> covered = {});
    /** An empty screen, and the reason why nothing could be read. */
    static Screen unreadable(const std::string& reason);

    /** The widgets with a name, in reading order. */
    [[nodiscard]] const std::vector<Widget>& widgets() const { return widgets_; }
    /** The widgets behind a dialog: name, role and position. */
    [[nodiscard]] const std::vector<Widget>& covered() const { return covered_; }
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] bool shows(const std::string& text) const { return find(text) != nullptr; }

    /** Finds a widget by name, preferably a button; null if there is none. */
    [[nodiscard]] const Widget* find(const std::string& name) const;
    /** The focused widget; null if there is none. */
    [[nodiscard]] const Widget* focused() const;

    /** Whether the application's window receives the keys. */
    [[nodiscard]] bool in_front() const { return in_front_; }

    /** All texts on one line, the focused widget in brackets. */
    [[nodiscard]] std::string description() const;

private:
    std::vector<Widget> widgets_;
    std::vector<Widget> covered_;
    bool in_front_;
    std::string reason_;
};

/** Converts the widgets to a floating aa{sv}, see org.velmora.Simulator.Ui.Screen. */
GVariant* to_variant(const Screen& screen);

/** A condition on the screen. */
struct Condition {
    std::string wanted; /**< description for the error message */
    std::function<bool(const Screen&)> is_met;
};

/** A wait timed out; the message says what the screen showed instead. */
struct NotSeen : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/** A wait with a time-out. */
class Wait {
public:
    Wait(Condition condition, std::chrono::milliseconds limit)
        : condition_(std::move(condition)), limit_(limit),
          deadline_(std::chrono::steady_clock::now() + limit) {}

    /** @param screen the latest snapshot. @throws NotSeen on time-out. */
    [[nodiscard]] bool is_over(const Screen& screen) const;

private:
    Condition condition_;
    std::chrono::milliseconds limit_;
    std::chrono::steady_clock::time_point deadline_;
};

Condition text_shown(const std::string& text);
/** The screen is readable and does not contain this text. */
Condition text_gone(const std::string& text);
Condition focus_on(const std::string& name);
/** The focused widget shows this number. */
Condition focused_number(int value);

} // namespace simulator
