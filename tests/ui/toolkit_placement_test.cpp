#include "toolkit/layout_engine/placement.h"

#include <gmock/gmock.h>
#include <ostream>

namespace vell {
// The test library requires this name.
void PrintTo(const Area& area, std::ostream* out) { // NOLINT(readability-identifier-naming)
    *out << '{' << area.x << ',' << area.y << ' ' << area.width << 'x' << area.height << '}';
}
} // namespace vell

namespace {

using namespace vell;
using enum ResizePolicy;

const Area area{100, 50, 400, 200};

struct Case {
    Arrangement arrangement;
    std::vector<ItemRequest> items;
    std::vector<Area> places;
};

const ItemRequest small{.given = {50, 20}};
const ItemRequest large{.given = {100, 30}};
const ItemRequest huge{.given = {400, 150}};
const Padding padding{1, 2, 3, 4}; // left, right, top, bottom

const std::vector<Case> cases = {
    {{}, {{.given = {100, 40}}}, {{250, 130, 100, 40}}},
    {{.align = 1}, {{.given = {10, 10}, .minimum = {30, 20}}}, {{100, 50, 30, 20}}},
    {{.align = 9, .gap = 10, .padding = padding}, {small, large}, {{448, 186, 50, 20}, {398, 216, 100, 30}}},
    {{.type = LayoutType::row, .align = 4, .gap = 10},
     {small, large},
     {{100, 140, 50, 20}, {160, 135, 100, 30}}},
    {{.type = LayoutType::row,
      .align = 4,
      .gap = 10,
      .padding = padding,
      .mirrored = true}, // the padding is not mirrored
     {small, large},
     {{448, 139, 50, 20}, {338, 134, 100, 30}}},
    {{.align = 1, .mirrored = true}, {small}, {{450, 50, 50, 20}}},
    {{.type = LayoutType::filled, .padding = padding}, {small}, {{101, 53, 397, 193}}},
    {{.gap = 10}, // items that fill the parent share the remaining space by weight
     {{.given = {400, 20}},
      {.horizontal = fill_parent, .vertical = fill_parent, .weight = 1.0},
      {.horizontal = fill_parent, .vertical = fill_parent, .weight = 3.0}},
     {{100, 50, 400, 20}, {100, 80, 400, 40}, {100, 130, 400, 120}}},
    {{.align = 1}, // weight 0 gets no share
     {{.minimum = {5, 6}, .horizontal = fill_parent, .vertical = fill_parent, .weight = 0.0}},
     {{100, 50, 400, 6}}},
    {{.align = 2}, {{.given = {100, 99}, .content = {7, 33}, .vertical = fit_content}}, {{250, 50, 100, 33}}},
    {{.align = 8}, {huge, huge}, {{100, 50, 400, 150}, {100, 200, 400, 150}}}, // larger than the layout
};

TEST(ToolkitPlacement, ItemsGetTheirAreas) {
    for (const auto& [arrangement, items, places] : cases)
        EXPECT_EQ(place(area, arrangement, items), places) << "case " << testing::PrintToString(places);
}

TEST(ToolkitPlacement, ContentSizeIncludesItemsGapsAndPadding) {
    for (const auto& [type, width, height] : {std::tuple(LayoutType::stack, 103, 67),
                                              {LayoutType::row, 163, 37},
                                              {LayoutType::filled, 103, 37}}) {
        const Size size =
            content_size({.type = type, .gap = 10, .padding = padding}, std::array{small, large});
        EXPECT_EQ(std::pair(size.width, size.height), std::pair(width, height));
    }
}

} // namespace
