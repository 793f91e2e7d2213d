#include "placement.h"

#include <algorithm>
#include <cmath>

namespace vell {
namespace {

/** One direction of an item's request. */
struct Extent {
    int wanted = 0; /**< its length if it does not fill the parent */
    bool fills = false;
};

Extent extent(const ItemRequest& item, bool horizontal) {
    const auto length = [horizontal](const Size& size) { return horizontal ? size.width : size.height; };
    const ResizePolicy policy = horizontal ? item.horizontal : item.vertical;
    const int minimum = std::max(length(item.minimum), item.content_is_minimum ? length(item.content) : 0);
    if (policy == ResizePolicy::fill_parent)
        return {minimum, true};
    const Size& wanted = policy == ResizePolicy::fit_content ? item.content : item.given;
    return {std::max(length(wanted), minimum), false};
}

/** The extent along the layout's direction, and across it. */
Extent along(LayoutType type, const ItemRequest& item) { return extent(item, type == LayoutType::row); }
Extent across(LayoutType type, const ItemRequest& item) { return extent(item, type != LayoutType::row); }

/** The column or row of an align code: 0 start, 1 middle, 2 end. */
int column(int align) { return (align - 1) % 3; }
int row(int align) { return (align - 1) / 3; }

int aligned(int free_space, int position) { return free_space * position / 2; }

Area without_padding(const Area& area, const Padding& padding) {
    return {area.x + padding.left, area.y + padding.top,
            std::max(0, area.width - padding.left - padding.right),
            std::max(0, area.height - padding.top - padding.bottom)};
}

/** Returns the total length along the layout's direction, gaps included. */
int wanted_length(const Arrangement& arrangement, std::span<const ItemRequest> items) {
    int length = items.empty() ? 0 : arrangement.gap * (static_cast<int>(items.size()) - 1);
    for (const ItemRequest& item : items)
        length += along(arrangement.type, item).wanted;
    return length;
}

} // namespace

std::vector<Area> place(const Area& area, const Arrangement& arrangement,
                        std::span<const ItemRequest> items) {
    const Area inner = without_padding(area, arrangement.padding);
    if (arrangement.type == LayoutType::filled)
        return {items.size(), inner};

    const bool is_row = arrangement.type == LayoutType::row;
    const int available = is_row ? inner.width : inner.height;
    const int breadth = is_row ? inner.height : inner.width;
    const int left = std::max(0, available - wanted_length(arrangement, items));
    double weights = 0.0;
    for (const ItemRequest& item : items)
        weights += along(arrangement.type, item).fills ? item.weight : 0.0;
    std::vector<int> lengths;
    int unused = left;
    for (const ItemRequest& item : items) {
        const Extent wanted = along(arrangement.type, item);
        const double share = wanted.fills && weights > 0.0 ? item.weight / weights : 0.0;
        const int more = static_cast<int>(std::floor(left * share));
        lengths.push_back(wanted.wanted + more);
        unused -= more;
    }

    const int third_along = is_row ? column(arrangement.align) : row(arrangement.align);
    const int third_across = is_row ? row(arrangement.align) : column(arrangement.align);
    int position = aligned(unused, third_along);
    std::vector<Area> places;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Extent wanted = across(arrangement.type, items[i]);
        const int width = wanted.fills ? breadth : wanted.wanted;
        const int offset = aligned(breadth - width, third_across);
        Area place = is_row ? Area{inner.x + position, inner.y + offset, lengths[i], width}
                            : Area{inner.x + offset, inner.y + position, width, lengths[i]};
        if (arrangement.mirrored)
            place.x = 2 * inner.x + inner.width - place.x - place.width;
        places.push_back(place);
        position += lengths[i] + arrangement.gap;
    }
    return places;
}

Size content_size(const Arrangement& arrangement, std::span<const ItemRequest> items) {
    int breadth = 0;
    int longest = 0;
    for (const ItemRequest& item : items) {
        longest = std::max(longest, along(arrangement.type, item).wanted);
        breadth = std::max(breadth, across(arrangement.type, item).wanted);
    }
    const int length = arrangement.type == LayoutType::filled ? longest : wanted_length(arrangement, items);
    const auto& [left, right, top, bottom] = arrangement.padding;
    const auto [width, height] =
        arrangement.type == LayoutType::row ? Size{length, breadth} : Size{breadth, length};
    return {left + width + right, top + height + bottom};
}

} // namespace vell
