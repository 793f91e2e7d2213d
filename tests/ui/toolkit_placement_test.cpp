/** Tests how a layout divides its area among its items. */
#include "toolkit/layout_engine/placement.h"

#include <array>
#include <gmock/gmock.h>

namespace {

using vell::Arrangement;
using vell::ItemRequest;
using vell::LayoutType;
using vell::Padding;
using enum vell::ResizePolicy;

/** x, y, width and height of each item. */
using Places = std::vector<std::array<int, 4>>;

struct Layout {
    Arrangement arrangement;
    std::vector<ItemRequest> items;
    Places places;
};

const ItemRequest small{.given = {50, 20}};
const ItemRequest large{.given = {100, 30}};
const ItemRequest huge{.given = {400, 150}};
const Padding padding{1, 2, 3, 4}; // left, right, top, bottom

const std::vector<Layout> layouts = {
    {{}, {{.given = {10, 10}, .minimum = {100, 40}}}, {{250, 130, 100, 40}}},
    {{.align = 9, .gap = 10, .padding = padding}, {small, large}, {{448, 186, 50, 20}, {398, 216, 100, 30}}},
    {{LayoutType::row, 4, 10, padding, true}, // the padding is not mirrored
     {small, large},
     {{448, 139, 50, 20}, {338, 134, 100, 30}}},
    {{.type = LayoutType::filled, .padding = padding}, {small}, {{101, 53, 397, 193}}},
    {{.gap = 10}, // items that fill the parent share the remaining space by weight
     {{.given = {400, 20}},
      {{}, {}, {}, fill_parent, fill_parent, 1.0},
      {{}, {}, {}, fill_parent, fill_parent, 3.0}},
     {{100, 50, 400, 20}, {100, 80, 400, 40}, {100, 130, 400, 120}}},
    {{.align = 1}, {{{}, {5, 6}, {}, fill_parent, fill_parent, 0.0}}, {{100, 50, 400, 6}}}, // has no share
    {{.align = 2}, {{.given = {100, 99}, .content = {7, 33}, .vertical = fit_content}}, {{250, 50, 100, 33}}},
    {{.align = 8}, {huge, huge}, {{100, 50, 400, 150}, {100, 200, 400, 150}}}, // larger than the layout
};

TEST(ToolkitPlacement, ItemsGetTheirAreas) {
    for (const auto& [arrangement, items, places] : layouts) {
        Places actual;
        for (const auto& [x, y, width, height] : place({100, 50, 400, 200}, arrangement, items))
            actual.push_back({x, y, width, height});
        EXPECT_EQ(actual, places);
    }
}

TEST(ToolkitPlacement, ContentSizeIncludesItemsGapsAndPadding) {
    for (const auto& [type, width, height] : {std::tuple(LayoutType::stack, 103, 67),
                                              {LayoutType::row, 163, 37},
                                              {LayoutType::filled, 103, 37}}) {
        const vell::Size size = content_size({type, 5, 10, padding}, std::array{small, large});
        EXPECT_EQ(std::pair(size.width, size.height), std::pair(width, height));
    }
}

} // namespace
