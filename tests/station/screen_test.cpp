#include "operator/screen.h"

#include <gmock/gmock.h>

namespace {

using station::Screen;
using station::Widget;
using testing::ElementsAre;

Widget widget(const std::string& name, const std::string& role, int x, int y, int width, int height) {
    Widget made;
    made.name = name;
    made.role = role;
    made.x = x;
    made.y = y;
    made.width = width;
    made.height = height;
    return made;
}

TEST(Screen, IsReadRowByRowWhateverTheOrderOfTheWidgets) {
    // As on the start page: buttons of another height than the title beside them, a nameless box around.
    const Screen screen(
        {widget("Start", "push button", 370, 390, 540, 60), widget("Exit", "push button", 1115, 43, 85, 53),
         widget("", "filler", 0, 0, 1280, 720), widget("RX", "push button", 647, 40, 160, 59),
         widget("Title", "heading", 0, 0, 400, 139), widget("TX", "push button", 471, 43, 160, 53)});
    EXPECT_THAT(screen.texts(), ElementsAre("Title", "TX", "RX", "Exit", "Start"));
}

TEST(Screen, KeepsRowsApartThatFollowClosely) {
    const Screen screen(
        {widget("Channel:", "label", 10, 100, 80, 30), widget("Set Channel", "push button", 5, 131, 500, 60),
         widget("Stop", "push button", 0, 192, 500, 60), widget("flat", "label", 0, 300, 10, 0)});
    EXPECT_THAT(screen.texts(), ElementsAre("Channel:", "Set Channel", "Stop", "flat"));
}

TEST(Screen, SaysADialogsTitleFirstAndItsNumberWithTheFocus) {
    Widget spinner = widget("15", "spin button", 500, 300, 200, 60);
    spinner.value = station::WidgetValue{15, 11, 26};
    spinner.focused = true;
    Widget named = widget("Power", "spin button", 500, 400, 200, 60);
    named.value = station::WidgetValue{7, 0, 20};
    const Screen screen({widget("Channel", "dialog", 0, 0, 1280, 720), named, spinner});
    EXPECT_EQ(screen.description(), "Channel | [15] | Power: 7");
    ASSERT_NE(screen.focused(), nullptr);
    EXPECT_EQ(screen.focused()->name, "15");
}

TEST(Screen, FindsTheButtonAmongWidgetsOfTheSameName) {
    const Screen screen({widget("11", "label", 0, 0, 10, 10), widget("11", "push button", 0, 50, 10, 10)});
    ASSERT_NE(screen.find("11"), nullptr);
    EXPECT_EQ(screen.find("11")->role, "push button");
    EXPECT_EQ(screen.find("12"), nullptr);
    EXPECT_EQ(Screen({}).description(), "nothing that can be read");
}

} // namespace
