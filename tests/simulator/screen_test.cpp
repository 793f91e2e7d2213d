/** What the model and end-to-end tests do not see of a screen; they see its order. */
#include "ui_driver/screen.h"

#include <gtest/gtest.h>

namespace {

using simulator::Screen;
using simulator::WidgetValue;

TEST(Screen, SaysADialogsTitleFirstAndItsNumbersAndWhatHasTheFocus) {
    const Screen screen(
        {{.name = "Channel", .role = "dialog", .y = 0, .width = 1280, .height = 720},
         {.name = "Power", .role = "spin button", .value = WidgetValue{7, 0, 20}, .y = 400, .height = 60},
         {.name = "15", .focused = true, .value = WidgetValue{15, 11, 26}, .y = 300, .height = 60}});
    EXPECT_EQ(screen.description(), "Channel | [15] | Power: 7");
    EXPECT_EQ(Screen({}).description(), "nothing that can be read");
}

TEST(Screen, FindsTheButtonAmongWidgetsOfTheSameName) {
    const Screen screen({{.name = "11", .role = "label"}, {.name = "11", .role = "push button", .y = 50}});
    ASSERT_NE(screen.find("11"), nullptr);
    EXPECT_EQ(screen.find("11")->role, "push button");
    EXPECT_EQ(screen.find("12"), nullptr);
}

} // namespace
