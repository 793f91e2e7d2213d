#include "support/announcements.h"
#include "support/road.h"

#include <thread>

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

/** A person who reads the screen through a screen reader, and uses it through its actions. */
class ScreenReaderRoad : public Road {
protected:
    /** Activates a button by its accessible action and waits until the screen shows `then`. */
    void act(const std::string& name, const std::string& then) {
        operator_.activate(name);
        operator_.wait_for(then);
    }

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

    /** Role and name of everything on the screen. */
    [[nodiscard]] std::vector<std::string> roles() const {
        std::vector<std::string> roles;
        const station::Screen screen = operator_.screen();
        for (const station::Widget& widget : screen.widgets())
            roles.push_back(widget.role + " " + widget.name);
        return roles;
    }

    std::optional<Announcements> announcements_;
};

TEST_F(ScreenReaderRoad, AnActionPressesAButtonOnceAndFocusesIt) {
    open_application();
    act("TX Test", "Start TX Test");
    act("Start TX Test", "Stop Test");
    act("Start Stream", "Stop Stream");
    act("Stop Stream", "Start Stream");
    act("Set Power", power_picker);
    operator_.press("Right");
    choose(power_picker, 1);
    act("Stop Test", "Start TX Test");
    expect_asked({"ember_start(0)", "ember_start_stream()", "ember_stop_stream()", "ember_set_power(1)",
                  "ember_stop()"});
    act("Exit", "Yes");
    operator_.activate("Yes");
    expect_orderly_end();
}

TEST_F(ScreenReaderRoad, EveryTextHasItsNameAndRole) {
    open_rx_test();
    EXPECT_THAT(roles(), ElementsAre("heading Velmora", "push button TX Test", "push button RX Test",
                                     "push button Exit", "label Received Packets: ?",
                                     "push button Count Received Packets", "push button Reset Count",
                                     "label Channel:", "push button 11", "push button Stop"));
    open_picker(channel_picker, 11, 12);
    EXPECT_THAT(roles(), ElementsAre("dialog Zigbee TX Channel", "spin button 12"));
    EXPECT_EQ(operator_.focused()->value, (station::WidgetValue{12, 11, 26}));
    choose(channel_picker, 12);
    go_to_header("Exit");
    enter("Cancel");
    EXPECT_THAT(roles(), ElementsAre("dialog Exit App", "label Do you want to exit ?", "push button Yes",
                                     "push button Cancel"));
}

TEST_F(ScreenReaderRoad, SaysWhatIsFocusedAndWhatAppears) {
    open_tx_test();
    listen();
    open_picker(power_picker, 0, 0);
    expect_said({"dialog Zigbee TX Power", "spin button 0"});
    operator_.press("Right");
    expect_said({"spin button 1"});
    choose(power_picker, 1);
    expect_said({"push button 1"});
    go("Up", "TX Test");
    expect_said({"push button TX Test"});
    operator_.press("Right", 2);
    expect_said({"push button RX Test", "push button Exit"});
    enter("Cancel");
    expect_said({"dialog Exit App", "push button Cancel"});
    operator_.press("XF86Back");
    expect_said({"push button Exit"});
}
