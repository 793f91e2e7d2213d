#include "support/announcements.h"
#include "support/road.h"

#include <thread>

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

/** A person who reads the screen through a screen reader, and uses it through its actions. */
class ScreenReaderRoad : public Road {
protected:
    /** Listens from now on. The application hears of a listener only some time after there is one. */
    void listen() {
        announcements_.emplace();
        expect_soon("the application to speak", [this] {
            operator_.press("Down");
            operator_.press("Up");
            return announcements_->count() > 0;
        });
        for (std::size_t heard = 0; heard != announcements_->count();) {
            heard = announcements_->count();
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        }
        announcements_->take();
    }

    /** These announcements have been made since the last time, and no others. */
    void expect_said(const std::vector<std::string>& wanted) {
        expect_soon("announcements " + testing::PrintToString(wanted), [&] {
            (void)operator_.screen(); // lets it hear
            return announcements_->count() >= wanted.size();
        });
        EXPECT_THAT(announcements_->take(), UnorderedElementsAreArray(wanted));
    }

    /** Role, label and name of everything on the screen, in the order of the screen and of the tree. */
    [[nodiscard]] std::vector<std::string> roles() const {
        std::vector<std::string> roles;
        simulator::Screen screen({});
        expect_soon("the tree to have the order of the screen", [&] {
            screen = operator_.screen();
            return reader_.read("velmora", simulator::Places::unasked).texts() == screen.texts();
        });
        for (const simulator::Widget& widget : screen.widgets())
            roles.push_back(widget.role + " " + widget.label + widget.name +
                            (widget.chosen ? ", chosen" : ""));
        return roles;
    }

    mutable simulator::SyncReader reader_{std::chrono::seconds(1)};
    std::optional<simulator::Announcements> announcements_;
};

TEST_F(ScreenReaderRoad, EveryTextHasItsNameAndRole) {
    open_test("RX Test", "11");
    EXPECT_THAT(roles(), ElementsAre("heading Velmora", "push button TX Test", "push button RX Test, chosen",
                                     "push button Exit", "label Received Packets: ?",
                                     "push button Count Received Packets", "push button Reset Count",
                                     "label Channel:", "push button Channel:11", "push button Stop"));
    enter("11");
    EXPECT_THAT(roles(), ElementsAre("dialog Zigbee TX Channel", "spin button 11"));
    EXPECT_EQ(operator_.focused()->value, (simulator::WidgetValue{11, 11, 26}));
    operator_.press("XF86Back");
    operator_.activate("Exit");
    operator_.wait_for_focus("Cancel");
    EXPECT_THAT(roles(), ElementsAre("dialog Exit App", "label Do you want to exit ?", "push button Yes",
                                     "push button Cancel"));
}

TEST_F(ScreenReaderRoad, SaysWhatIsFocusedAndWhatAppears) {
    open_test("TX Test", "Set Power");
    listen();
    enter("0");
    expect_said({"dialog Zigbee TX Power", "spin button 0"});
    send_event(simulator::this_television(), "('ready',)"); // another page behind the popup
    expect_said({"label Power: ", "label Channel: "});
    operator_.press("Right");
    expect_said({"spin button 1"});
    enter("1");
    expect_said({"push button 1"});
    operator_.press("Down", 2);
    expect_said({"push button Set Channel", "push button Start Stream"});
    operator_.press("Return");
    expect_said({"push button Stop Stream"});
    EXPECT_FALSE(operator_.screen().find("1")->enabled);
    EXPECT_THROW(operator_.activate("1"), std::runtime_error);
    operator_.press("Up");
    expect_said({"push button TX Test"});
    operator_.press("Right", 2);
    expect_said({"push button RX Test", "push button Exit"});
    enter("Cancel");
    expect_said(
        {"push button Yes", "push button Cancel", "dialog Exit App", "push button Cancel"}); // first texts
    send_event(simulator::this_television(), "('ready',)");
    expect_said({"label Power: ", "push button Set Power", "label Channel: ", "push button Set Channel",
                 "push button Start Stream", "push button Stop Test"});
    operator_.press("XF86Back");
    expect_said({"push button Set Power"});
}

TEST_F(ScreenReaderRoad, SaysEachTextThatIsSetAndNothingOnTheWayToTheNextPage) {
    open_test("RX Test", "11");
    listen();
    operator_.press("Up");
    expect_said({"push button Reset Count"});
    for (int time = 0; time < 2; ++time) {
        operator_.press("Return");
        expect_said({"label Received Packets: 0"});
    }
    operator_.press("Down", 2);
    expect_said({"push button 11", "push button Stop"});
    enter("Start RX Test");
    expect_said(
        {"push button Start RX Test", "push button Start RX Test"}); // its text, and that it has the focus
    operator_.press("Up");
    expect_said({"push button RX Test"});
}
