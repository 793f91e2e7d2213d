/** How a layout divides its area among its items: plain arithmetic, no toolkit. */
#pragma once

#include <span>
#include <vector>

namespace vell {

/** A rectangle in pixels. */
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Area&) const = default;
};

/** A size in pixels. */
struct Size {
    int width = 0;
    int height = 0;
};

/** How an item is sized in one direction. */
enum class ResizePolicy { keep = 1, fit_content = 3, fill_parent = 4 };

/** The sizes an item requests from its layout. */
struct ItemRequest {
    Size given{};   /**< the size passed to append */
    Size minimum{}; /**< the smallest size it gets */
    Size content{}; /**< what its content needs */
    ResizePolicy horizontal = ResizePolicy::keep;
    ResizePolicy vertical = ResizePolicy::keep;
    double weight = 1.0;             /**< share of the space for items that fill the parent */
    bool content_is_minimum = false; /**< its content size is a minimum too */
};

/** The direction in which a layout places its items. */
enum class LayoutType { stack = 1, row = 2, filled = 3 };

/** Space in pixels inside a layout's edges. */
struct Padding {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
};

/** How a layout places its items. */
struct Arrangement {
    LayoutType type = LayoutType::stack;
    int align = 5; /**< 1 top-left to 9 bottom-right, in reading order */
    int gap = 0;
    Padding padding{};
    bool mirrored = false; /**< rows run from right to left, and align codes swap left and right */
};

/** Returns the items' areas, in their order, inside the layout's area. */
std::vector<Area> place(const Area& area, const Arrangement& arrangement, std::span<const ItemRequest> items);

/** Returns the size that the items need, padding and gaps included. */
Size content_size(const Arrangement& arrangement, std::span<const ItemRequest> items);

} // namespace vell
