#include "support/road.h"

using testing::ElementsAre;

/** Packets arrive on channel 15, on no other. */
class RxRoad : public Road {};

TEST_F(RxRoad, CountsOnTheChosenChannelResetsAndStops) {
    open_rx_test();
    EXPECT_THAT(operator_.texts(),
                ElementsAre("Velmora", "TX Test", "RX Test", "Exit", "Received Packets: ?",
                            "Count Received Packets", "Reset Count", "Channel:", "11", "Stop"));
    open_picker(channel_picker, 11, 15);
    choose(channel_picker, 15);
    expect_asked({"ember_set_channel(15)"});
    EXPECT_EQ(radio("mode"), "rx");

    go("Up", "Count Received Packets");
    const long first = count_until([](long packets) { return packets > 0; });
    const long second = count_until([first](long packets) { return packets > first + 100; });
    EXPECT_LE(second, std::stol(radio("received")));

    // On a silent channel the count stands, and goes to 0 by a reset alone.
    go("Down", "15");
    open_picker(channel_picker, 15, 16);
    choose(channel_picker, 16);
    const auto received = std::stol(radio("received"));
    EXPECT_GE(received, second);
    go("Up", "Count Received Packets");
    EXPECT_EQ(count_until([received](long packets) { return packets == received; }), received);
    go("Down", "Reset Count");
    operator_.press("Return");
    operator_.wait_for("Received Packets: 0");
    EXPECT_EQ(radio("received"), "0");

    go("Down", "Stop");
    enter("Start RX Test");
    EXPECT_EQ(radio("mode"), "off");
}

TEST_F(RxRoad, TheOtherTabReplacesThePageAndTheNextStartIsItsOwn) {
    open_rx_test();
    go_to_header("TX Test");
    enter("Start TX Test");
    EXPECT_FALSE(operator_.screen().shows("Count Received Packets"));
    enter("Set Power");
    expect_asked({"ember_start(0)"});
    EXPECT_EQ(radio("mode"), "tx");
}
