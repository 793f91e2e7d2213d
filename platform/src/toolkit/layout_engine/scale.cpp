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

int Scale::rescaled(int pixels) const { return static_cast<int>(std::lround(pixels * ratio)); }

ItemRequest Scale::rescaled(ItemRequest request) const {
    for (Size* const size : {&request.given, &request.minimum})
        *size = {rescaled(size->width), rescaled(size->height)};
    return request;
}

Arrangement Scale::rescaled(Arrangement arrangement) const {
    auto& [left, right, top, bottom] = arrangement.padding;
    for (int* const length : {&arrangement.gap, &left, &right, &top, &bottom})
        *length = rescaled(*length);
    return arrangement;
}

Area Scale::page_area(const Area& window) const {
    const int width = static_cast<int>(std::lround(page_units_across * unit * ratio));
    const int height = static_cast<int>(std::lround(page_units_down * unit * ratio));
    return {window.x + (window.width - width) / 2, window.y + (window.height - height) / 2, width, height};
}

} // namespace vell
