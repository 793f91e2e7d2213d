#include "radio/radio.h"
#include "ui_driver/screen.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using simulator::Radio;
using simulator::Screen;
using simulator::WidgetValue;

/** The radio's packet count, with a simulated clock. */
class RadioCount : public testing::Test {
protected:
    RadioCount() {
        radio_.set_traffic(11, 0, now_);
        radio_.set_traffic(15, 10, now_);
    }

    int ask(const std::string& command) {
        return radio_.handle(simulator::parse_request("> 1 " + command).value(), now_).code;
    }
    /** Advances the clock and returns the count. */
    auto received_after(std::chrono::milliseconds time) { return radio_.state(now_ += time).received; }

    Radio radio_;
    Radio::Time now_ = Radio::Time{} + 1h;
};

TEST_F(RadioCount, IncreasesOnlyOnItsChannelInTheRxTest) {
    now_ += 10s; // before the test
    ask("start 1");
    ask("set_channel 15");
    for (int question = 0; question < 1000; ++question) // reading must not lose fractions of a packet
        received_after(2ms);
    EXPECT_EQ(received_after(0s), 20);
    EXPECT_EQ(radio_.handle({1, "get_rx_statistics", {}}, now_).text, "20 packets on channel 15");
    ask("reset_rx_statistics");
    EXPECT_EQ(received_after(1s), 10);
    radio_.set_traffic(11, 10, now_);
    for (int turn = 0; turn < 20; ++turn) { // each stay on a channel is slightly too short for a packet
        received_after(turn % 2 == 0 ? 90ms : 10ms);
        ask(turn % 2 == 0 ? "set_channel 11" : "set_channel 15");
    }
    EXPECT_EQ(received_after(0s), 20) << "fractions of packets on two channels must add up";
    for (const char* const start : {"start 0", "start 1"}) {
        ask("stop");
        now_ += 1s;
        ask(start);
    }
    EXPECT_EQ(received_after(0s), 0);
    ask("set_channel 26");
    EXPECT_EQ(received_after(20s), 5) << "a quiet channel";
    ask("set_channel 20");
    EXPECT_EQ(received_after(20s), 405) << "a busy channel";
    radio_.set_traffic(20, 0, now_);
    EXPECT_EQ(received_after(20s), 405);
}

TEST_F(RadioCount, IncludesRunningStreamsOfOtherTelevisions) {
    ask("start 1");
    EXPECT_TRUE(radio_.add_stream("strong", 11, 20, now_));
    EXPECT_TRUE(radio_.add_stream("weak", 11, 0, now_));
    EXPECT_TRUE(radio_.add_stream("elsewhere", 12, 20, now_));
    EXPECT_EQ(received_after(1s), 160);
    radio_.remove_stream("strong", now_);
    EXPECT_EQ(received_after(1s), 220);
    EXPECT_FALSE(radio_.add_stream("nowhere", 27, 20, now_));
    EXPECT_FALSE(radio_.add_stream("too strong", 11, 21, now_));
    ask("reset"); // resets the module, not the streams of others
    ask("start 1");
    EXPECT_EQ(received_after(1s), 60);
}

TEST_F(RadioCount, InvalidCommandsAreRefusedWithTheirCode) {
    const std::initializer_list<std::pair<const char*, int>> rows{
        {"stop", 1},           {"start 2", 3},        {"start 0", 0},        {"start 1", 2},
        {"set_channel 10", 5}, {"set_channel 27", 5}, {"set_channel 26", 0}, {"set_power -1", 6},
        {"set_power 21", 6},   {"set_power 20", 0},   {"stop_stream", 8},    {"start_stream", 0},
        {"start_stream", 7},   {"set_channel 11", 7}, {"set_power 3", 7},    {"get_rx_statistics", 4},
        {"stop", 0},           {"set_channel 11", 1}, {"start 1", 0},        {"start_stream", 4},
        {"sing", 9},
    };
    for (const auto& [command, code] : rows)
        EXPECT_EQ(ask(command), code) << command;
}

TEST(Screen, ListsTheTitleFirstAndPrefersAButtonAmongEqualNames) {
    const Screen screen(
        {{.name = "Channel", .role = "dialog", .y = 0, .width = 1280, .height = 720},
         {.name = "Power", .role = "spin button", .value = WidgetValue{7, 0, 20}, .y = 400, .height = 60},
         {.name = "15", .role = "label", .y = 200, .height = 60},
         {.name = "15", .role = "push button", .focused = true, .y = 300, .height = 60}});
    EXPECT_EQ(screen.description(), "Channel | 15 | [15] | Power: 7");
    EXPECT_EQ(screen.find("15"), screen.focused());
}

} // namespace
