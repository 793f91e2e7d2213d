#include "placement.h"

#include <algorithm>
#include <cmath>

namespace vell {
namespace {

/** One direction of an item's request. */
struct Extent {
    int wanted = 0; /**< what it gets when it does not fill the parent */
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

/** The extent in the direction in which the layout's items follow each other, and across it. */
Extent along(LayoutType type, const ItemRequest& item) { return extent(item, type == LayoutType::row); }
Extent across(LayoutType type, const ItemRequest& item) { return extent(item, type != LayoutType::row); }

/** Column or row of an align code: 0 at the start, 1 in the middle, 2 at the end. */
int column(int align) { return (align - 1) % 3; }
int row(int align) { return (align - 1) / 3; }

int aligned(int free_space, int position) { return free_space * position / 2; }

int total_gap(const Arrangement& arrangement, std::size_t items) {
    return items > 1 ? arrangement.gap * static_cast<int>(items - 1) : 0;
}

Area without_padding(const Area& area, const Padding& padding) {
    return {area.x + padding.left, area.y + padding.top,
            std::max(0, area.width - padding.left - padding.right),
            std::max(0, area.height - padding.top - padding.bottom)};
}

/** Lengths along the layout's direction: what is wanted, and the rest shared by those that fill it. */
std::vector<int> lengths_along(const Arrangement& arrangement, std::span<const ItemRequest> items,
                               int available) {
    int left = available - total_gap(arrangement, items.size());
    double weights = 0.0;
    for (const ItemRequest& item : items) {
        const Extent wanted = along(arrangement.type, item);
        left -= wanted.wanted;
        weights += wanted.fills ? item.weight : 0.0;
    }
    std::vector<int> lengths;
    for (const ItemRequest& item : items) {
        const Extent wanted = along(arrangement.type, item);
        const double share = wanted.fills && weights > 0.0 ? item.weight / weights : 0.0;
        lengths.push_back(wanted.wanted + static_cast<int>(std::floor(std::max(0, left) * share)));
    }
    return lengths;
}

void mirror(const Area& area, std::vector<Area>& places) {
    for (Area& place : places)
        place.x = area.x + area.width - (place.x - area.x) - place.width;
}

} // namespace

std::vector<Area> place(const Area& area, const Arrangement& arrangement,
                        std::span<const ItemRequest> items) {
    const Area inner = without_padding(area, arrangement.padding);
    std::vector<Area> places;
    if (arrangement.type == LayoutType::filled) {
        places.assign(items.size(), inner);
        return places;
    }

    const bool is_row = arrangement.type == LayoutType::row;
    const int available = is_row ? inner.width : inner.height;
    const int breadth = is_row ? inner.height : inner.width;
    const std::vector<int> lengths = lengths_along(arrangement, items, available);
    int used = total_gap(arrangement, items.size());
    for (const int length : lengths)
        used += length;

    const int third_along = is_row ? column(arrangement.align) : row(arrangement.align);
    const int third_across = is_row ? row(arrangement.align) : column(arrangement.align);
    int position = aligned(std::max(0, available - used), third_along);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Extent wanted = across(arrangement.type, items[i]);
        const int width = wanted.fills ? breadth : wanted.wanted;
        const int offset = aligned(breadth - width, third_across);
        places.push_back(is_row ? Area{inner.x + position, inner.y + offset, lengths[i], width}
                                : Area{inner.x + offset, inner.y + position, width, lengths[i]});
        position += lengths[i] + arrangement.gap;
    }
    if (arrangement.mirrored)
        mirror(inner, places);
    return places;
}

Size content_size(const Arrangement& arrangement, std::span<const ItemRequest> items) {
    int length = total_gap(arrangement, items.size());
    int breadth = 0;
    int longest = 0;
    for (const ItemRequest& item : items) {
        const int wanted = along(arrangement.type, item).wanted;
        length += wanted;
        longest = std::max(longest, wanted);
        breadth = std::max(breadth, across(arrangement.type, item).wanted);
    }
    if (arrangement.type == LayoutType::filled)
        length = longest;
    const Padding& padding = arrangement.padding;
    Size size = arrangement.type == LayoutType::row ? Size{length, breadth} : Size{breadth, length};
    size.width += padding.left + padding.right;
    size.height += padding.top + padding.bottom;
    return size;
}

} // namespace vell
