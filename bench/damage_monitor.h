/** Reports when the screen is drawn on, whichever program draws (the X server's DAMAGE extension). */
#pragma once

#include "measurement.h"

#include "ui_driver/keyboard.h"

#include <optional>
#include <vector>

namespace bench {

/** A screen is quiet once nothing has been drawn for this long. */
constexpr std::chrono::milliseconds quiet(300);

class DamageMonitor {
public:
    /** @throws std::runtime_error without an X display that has the extension. */
    DamageMonitor();

    /** Forgets the drawings up to now. */
    void forget();
    /**
     * Waits for the next drawing of at least this share of the screen's pixels, 0 to 1.
     *
     * @return when the X server reported it; nothing when the time is over.
     */
    std::optional<Clock::time_point> next(std::chrono::milliseconds time, double share = 0);
    /** The same. @throws std::runtime_error when nothing is drawn within ten seconds. */
    Clock::time_point wait_for_drawing(double share = 0);
    /** Waits until the screen is quiet. */
    void wait_until_quiet();
    /** Presses keys, each on a quiet screen. @return when the last one was pressed. */
    Clock::time_point press(const std::vector<const char*>& keys);

private:
    simulator::Display display_ = simulator::open_display();
    int damage_event_ = 0;
};

} // namespace bench
