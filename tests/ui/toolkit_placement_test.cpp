#include "toolkit/layout_engine/placement.h"

#include <gmock/gmock.h>
#include <ostream>

namespace vell {
// Named as the test library wants them.
void PrintTo(const Area& area, std::ostream* out) { // NOLINT(readability-identifier-naming)
    *out << '{' << area.x << ',' << area.y << ' ' << area.width << 'x' << area.height << '}';
}
} // namespace vell

namespace {

using namespace vell;
using enum ResizePolicy;

const Area area{100, 50, 400, 200};

struct Case {
    const char* what;
    Arrangement arrangement;
    std::vector<ItemRequest> items;
    std::vector<Area> places;
};

const std::vector<Case> cases = {
    {"one item in the centre", {}, {{.given = {100, 40}}}, {{250, 130, 100, 40}}},
    {"its minimum is larger than the size given",
     {.align = 1},
     {{.given = {10, 10}, .minimum = {30, 20}}},
     {{100, 50, 30, 20}}},
    {"a stack at the bottom right, with gap and padding",
     {.align = 9, .gap = 10, .padding = {1, 2, 3, 4}},
     {{.given = {50, 20}}, {.given = {100, 30}}},
     {{448, 186, 50, 20}, {398, 216, 100, 30}}},
    {"a row follows the reading order",
     {.type = LayoutType::row, .align = 4, .gap = 10},
     {{.given = {50, 20}}, {.given = {100, 30}}},
     {{100, 140, 50, 20}, {160, 135, 100, 30}}},
    {"mirrored, the row starts at the right; padding stays where it was",
     {.type = LayoutType::row, .align = 4, .gap = 10, .padding = {0, 5, 0, 0}, .mirrored = true},
     {{.given = {50, 20}}, {.given = {100, 30}}},
     {{445, 140, 50, 20}, {335, 135, 100, 30}}},
    {"mirrored, top-left becomes top-right",
     {.align = 1, .mirrored = true},
     {{.given = {50, 20}}},
     {{450, 50, 50, 20}}},
    {"the one child fills all but the padding",
     {.type = LayoutType::filled, .padding = {10, 20, 30, 40}},
     {{.given = {1, 1}}},
     {{110, 80, 370, 130}}},
    {"items that fill the parent share what is left by their weights",
     {.gap = 10},
     {{.given = {400, 20}},
      {.horizontal = fill_parent, .vertical = fill_parent, .weight = 1.0},
      {.horizontal = fill_parent, .vertical = fill_parent, .weight = 3.0}},
     {{100, 50, 400, 20}, {100, 80, 400, 40}, {100, 130, 400, 120}}},
    {"an item keeps one direction and fits its content in the other",
     {.align = 2},
     {{.given = {100, 99}, .content = {7, 33}, .vertical = fit_content}},
     {{250, 50, 100, 33}}},
    {"more than there is room for: in order from the start, none lost",
     {.align = 8},
     {{.given = {400, 150}}, {.given = {400, 150}}},
     {{100, 50, 400, 150}, {100, 200, 400, 150}}},
    {"no weight at all is no share",
     {.align = 1},
     {{.minimum = {5, 6}, .horizontal = fill_parent, .vertical = fill_parent, .weight = 0.0}},
     {{100, 50, 400, 6}}},
};

TEST(ToolkitPlacement, ItemsGetTheirAreas) {
    for (const auto& [what, arrangement, items, places] : cases)
        EXPECT_EQ(place(area, arrangement, items), places) << what;
}

TEST(ToolkitPlacement, ContentNeedsWhatItsItemsNeed) {
    const std::vector<ItemRequest> items = {{.given = {50, 20}}, {.given = {100, 30}}};
    const auto needed = [&items](LayoutType type) {
        const Size size = content_size({.type = type, .gap = 10, .padding = {1, 2, 3, 4}}, items);
        return std::pair(size.width, size.height);
    };
    EXPECT_EQ(needed(LayoutType::stack), std::pair(103, 67));
    EXPECT_EQ(needed(LayoutType::row), std::pair(163, 37));
    EXPECT_EQ(needed(LayoutType::filled), std::pair(103, 37));
}

} // namespace
