/** The size of a layout unit, and the scaling of sizes with the window. */
#pragma once

#include "placement.h"

#include <algorithm>
#include <cmath>

namespace vell {

constexpr double page_units_across = 240.0;
constexpr double page_units_down = 135.0;

/** The scale of the toolkit's window. */
struct Scale {
    double unit = 8.0;  /**< pixels of a layout unit when the toolkit was initialised (the initial unit) */
    double ratio = 1.0; /**< the current layout unit divided by the initial one */
};

inline Scale& scale() {
    static Scale scale;
    return scale;
}

/** Returns the size in pixels of a layout unit, so that a 16:9 page fits into the window. */
inline double unit_in(const Size& window) {
    return std::min(window.width / page_units_across, window.height / page_units_down);
}

/** Scales a length to whole pixels, rounded to the nearest. */
inline int pixels(double length, double scale) { return static_cast<int>(std::lround(length * scale)); }

} // namespace vell
