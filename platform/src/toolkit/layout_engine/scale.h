/** The size of a layout unit, and how sizes follow the window's. */
#pragma once

#include "placement.h"

namespace vell {

/** Of the toolkit's window. */
struct Scale {
    double unit = 8.0;  /**< pixels of a layout unit when the toolkit was initialized */
    double ratio = 1.0; /**< of a layout unit at the window's present size to that */
};
Scale& scale();

/** Pixels of a layout unit in a window of this size: a page of 16:9 fits into it. */
double unit_in(const Size& window);

/** A size in pixels, made from units earlier, at the window's present size. */
int rescaled(int pixels);

/** The page's area: 240 x 135 units in the middle of the window's area. */
Area page_area(const Area& window);

} // namespace vell
