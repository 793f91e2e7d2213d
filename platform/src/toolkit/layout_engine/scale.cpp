#include "scale.h"

#include <algorithm>
#include <cmath>

namespace vell {
namespace {

constexpr double page_units_across = 240.0;
constexpr double page_units_down = 135.0;

} // namespace

Scale& scale() {
    static Scale scale;
    return scale;
}

double unit_in(const Size& window) {
    return std::min(window.width / page_units_across, window.height / page_units_down);
}

int rescaled(int pixels) { return static_cast<int>(std::lround(pixels * scale().ratio)); }

Area page_area(const Area& window) {
    const double unit = unit_in({window.width, window.height});
    const int width = static_cast<int>(std::lround(page_units_across * unit));
    const int height = static_cast<int>(std::lround(page_units_down * unit));
    return {window.x + (window.width - width) / 2, window.y + (window.height - height) / 2, width, height};
}

} // namespace vell
