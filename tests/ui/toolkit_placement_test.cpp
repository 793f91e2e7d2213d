/** Tests how a layout divides its area among its items. */
#include "toolkit/layout_engine/placement.h"

#include <array>
#include <gmock/gmock.h>

namespace {

using namespace vell;
using enum LayoutType;
using enum ResizePolicy;

struct Layout {
    Arrangement arrangement; /**< type, align, gap, padding, mirrored */
    std::vector<ItemRequest> items;
    std::array<int, 2> content_size;
    std::vector<std::array<int, 4>> places; /**< x, y, width and height of each item */
};

const ItemRequest small{.given = {50, 20}};
const ItemRequest large{.given = {100, 30}};
const ItemRequest huge{.given = {400, 150}};
const Padding padding{1, 2, 3, 4}; // left, right, top, bottom; never mirrored

ItemRequest filling(double weight) {
    return {.minimum = {5, 6}, .horizontal = fill_parent, .vertical = fill_parent, .weight = weight};
}

const std::vector<Layout> layouts = {
    {{}, {{.given = {10, 10}, .minimum = {100, 40}}}, {100, 40}, {{250, 130, 100, 40}}},
    {{stack, 9, 10, padding}, {small, large}, {103, 67}, {{448, 186, 50, 20}, {398, 216, 100, 30}}},
    {{row, 4, 10, padding, true}, {small, large}, {163, 37}, {{448, 139, 50, 20}, {338, 134, 100, 30}}},
    {{filled, 5, 0, padding}, {small, large}, {103, 37}, {{101, 53, 397, 193}, {101, 53, 397, 193}}},
    {{row, 5, 10},
     {small, filling(1), filling(3)},
     {80, 20},
     {{100, 140, 50, 20}, {160, 50, 85, 200}, {255, 50, 245, 200}}},
    {{stack, 1}, {filling(0)}, {5, 6}, {{100, 50, 400, 6}}}, // weight 0 gets no share
    {{stack, 2}, {{{100, 99}, {}, {7, 33}, keep, fit_content}}, {100, 33}, {{250, 50, 100, 33}}},
    {{stack, 8},
     {huge, huge},
     {400, 300},
     {{100, 50, 400, 150}, {100, 200, 400, 150}}}, // larger than the layout
};

TEST(ToolkitPlacement, ComputesContentSizesAndItemPlaces) {
    for (const auto& [arrangement, items, content, places] : layouts) {
        const auto [width, height] = content_size(arrangement, items);
        EXPECT_EQ((std::array{width, height}), content);
        std::vector<std::array<int, 4>> actual;
        for (const Area& each : place({100, 50, 400, 200}, arrangement, items))
            actual.push_back({each.x, each.y, each.width, each.height});
        EXPECT_EQ(actual, places);
    }
}

} // namespace
