/** Sees when the screen is drawn on, whatever program does it. */
#pragma once

#include "ui_driver/keyboard.h"

#include <chrono>
#include <optional>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

/** A screen on which nothing has been drawn for so long stands still. */
constexpr std::chrono::milliseconds quiet(300);

/** One drawing on the screen, at the moment the X server told of it. */
struct Drawing {
    Clock::time_point moment;
    double share; /**< of the screen's pixels, 0 to 1 */
};

class DrawingWatch {
public:
    /** @throws std::runtime_error without an X display that tells of drawings. */
    DrawingWatch();

    /** Forgets the drawings up to now. */
    void forget();
    /** Waits for the next drawing; nothing when none comes within the patience. */
    std::optional<Drawing> next(std::chrono::milliseconds patience);
    /** Waits for a drawing of nearly the whole screen. @throws std::runtime_error after ten seconds. */
    Clock::time_point next_page();
    /** Waits until nothing has been drawn for so long. */
    void wait_for_quiet(std::chrono::milliseconds time);
    /** Presses the keys of a way, each when the screen stands still, and then one more. @return when that one was. */
    Clock::time_point press(const std::vector<const char*>& way, const char* key);

    [[nodiscard]] const simulator::Display& display() const { return display_; }

private:
    simulator::Display display_ = simulator::open_display();
    int damage_event_ = 0;
};

} // namespace bench
