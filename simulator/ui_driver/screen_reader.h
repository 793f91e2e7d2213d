/** Reads the screen as a screen reader does, over the accessibility bus. */
#pragma once

#include "accessibility_bus.h"
#include "screen.h"

#include <chrono>
#include <string>

namespace simulator {

/** Whether a look asks where the widgets are: without, it takes half the time, and they come in no order. */
enum class Places : bool { unasked, asked };

class ScreenReader {
public:
    /**
     * Says on the session bus that a screen reader is there, which an application asks when it starts.
     *
     * @param patience how long the application may take to answer a question; a look ends with the first that
     * is not answered.
     * @throws std::runtime_error without an accessibility bus.
     */
    explicit ScreenReader(std::chrono::milliseconds patience) : bus_(patience) {}

    /** Whether the accessibility bus is still there. */
    [[nodiscard]] bool is_connected() const { return bus_.is_connected(); }

    /**
     * Looks at the screen. Nothing is remembered from one look to the next.
     *
     * @param application the name the application has on the accessibility bus, that of its program; empty:
     * the first one there that has a window.
     * @return an empty screen when the application is not there or too busy to answer.
     */
    [[nodiscard]] Screen read(const std::string& application, Places places = Places::asked) const;

    /**
     * Presses a widget through its accessible action, as a screen reader's user does. An application that
     * works longer on it than the bus waits is not an error.
     *
     * @throws std::runtime_error when the widget has no action.
     */
    void activate(const Widget& widget) const;

private:
    AccessibilityBus bus_;
};

} // namespace simulator
