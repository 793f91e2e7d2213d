/** Reports when any program draws on the screen (the X server's DAMAGE extension). */
#pragma once

#include "measurement.h"

#include "ui_driver/keyboard.h"

#include <optional>
#include <vector>

namespace bench {

/** A screen is idle once nothing has been drawn for this long. */
constexpr std::chrono::milliseconds quiet(300);

class DamageMonitor {
public:
    /** @throws std::runtime_error without an X display with the extension. */
    DamageMonitor();

    /** Discards the drawings so far. */
    void forget();
    /**
     * Waits for the next drawing that covers at least this share of the screen's pixels, 0 to 1.
     *
     * @return when the X server reported it; nothing on time-out.
     */
    std::optional<Clock::time_point> next(std::chrono::milliseconds time, double share = 0);
    /** Waits like `next`. @throws std::runtime_error after ten seconds. */
    Clock::time_point wait_for_drawing(double share = 0);
    /** Waits until the screen is idle. */
    void wait_until_quiet();
    /** Presses keys, each on an idle screen. @return when the last one was pressed. */
    Clock::time_point press(const std::vector<const char*>& keys);

private:
    simulator::Display display_ = simulator::open_display();
    int damage_event_ = 0;
};

} // namespace bench
