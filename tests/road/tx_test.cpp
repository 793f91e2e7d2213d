#include "support/road.h"

using testing::ElementsAre;
using testing::IsEmpty;

class TxRoad : public Road {};

TEST_F(TxRoad, SetsPowerAndChannelStreamsAndLeaves) {
    open_application();
    EXPECT_THAT(operator_.texts(), ElementsAre("Velmora", "TX Test", "RX Test", "Exit"));
    enter("Start TX Test");
    enter("Set Power");
    EXPECT_THAT(operator_.texts(), ElementsAre("Velmora", "TX Test", "RX Test", "Exit", "Power:", "Set Power",
                                               "Channel:", "Set Channel", "Start Stream", "Stop Test"));
    EXPECT_EQ(radio("mode"), "tx");

    open_picker(power_picker, 0, 7);
    choose(power_picker, 7);
    go("Down", "Set Channel");
    open_picker(channel_picker, 11, 16);
    operator_.press("Left");
    operator_.wait_for_value(15);
    choose(channel_picker, 15);
    expect_asked({"ember_start(0)", "ember_set_power(7)", "ember_set_channel(15)"});
    EXPECT_EQ(radio("power"), "7");
    EXPECT_EQ(radio("channel"), "15");

    go("Down", "Start Stream");
    enter("Stop Stream");
    EXPECT_EQ(radio("stream"), "true");
    EXPECT_FALSE(operator_.is_focusable("7"));
    EXPECT_FALSE(operator_.is_focusable("15"));
    enter("Start Stream");
    EXPECT_EQ(radio("stream"), "false");
    EXPECT_TRUE(operator_.is_focusable("7"));
    EXPECT_TRUE(operator_.is_focusable("15"));

    go("Down", "Stop Test");
    enter("Start TX Test");
    EXPECT_EQ(radio("mode"), "off");
    EXPECT_THAT(station::running_processes({"cpcd", "socat", "zigbeed"}).size(), 3);
    go_to_header("Exit");
    enter("Cancel");
    go("Left", "Yes");
    operator_.press("Return");
    expect_orderly_end();
}

TEST_F(TxRoad, PickersKeepTheirLimitsAndTheValueChosenUntilTheNextStart) {
    open_tx_test();
    open_picker(power_picker, 0, 20);
    operator_.press("Right", 3);
    choose(power_picker, 20);
    open_picker(power_picker, 20, 18);
    operator_.press("XF86Back");
    operator_.wait_for_focus("20"); // not chosen: the button keeps its number
    go("Down", "Set Channel");
    open_picker(channel_picker, 11, 26);
    operator_.press("Right", 3);
    choose(channel_picker, 26);
    expect_asked({"ember_set_power(20)", "ember_set_channel(26)"});

    go("Down", "Stop Test");
    enter("Start TX Test");
    enter("Set Power"); // starts the radio stack anew over the running one
    EXPECT_THAT(station::zombies(), IsEmpty());
    open_picker(power_picker, 0, 1);
    choose(power_picker, 1);
    EXPECT_EQ(radio("power"), "1");
}

TEST_F(TxRoad, OnlyTheExactEventBuildsThePageAnew) {
    open_tx_test();
    open_picker(power_picker, 0, 3);
    choose(power_picker, 3);
    expect_asked({"ember_set_power(3)"});
    for (const char* const event : {"ready ", "READY", ""})
        let_host_emit(event);
    expect_soon("the events", [this] { return log_.count("[EVENT DATA]") == 4; });
    EXPECT_TRUE(operator_.screen().shows("3"));
    let_host_emit("ready");
    operator_.wait_for_focus("Set Power");
    expect_asked({"ember_start(0)"});
}
