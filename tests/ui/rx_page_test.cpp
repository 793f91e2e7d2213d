#include "support/pages.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;

class RxPage : public test::Pages {
protected:
    RxPage() {
        open("RX Test");
        asked();
    }

    [[nodiscard]] std::string count() const { return content().front(); }
};

TEST_F(RxPage, ItemsInOrderWithTheChannelFocused) {
    const auto fresh = ElementsAre("Received Packets: ?", "Count Received Packets", "Reset Count",
                                   "Channel: ", "11", "Stop");
    EXPECT_THAT(content(), fresh);
    EXPECT_EQ(screen->focused(), "11");
    activate("11");
    EXPECT_NE(screen->find("popup Zigbee TX Channel"), nullptr);
    screen->press("Up", 9);
    screen->press("Return");
    EXPECT_THAT(asked(), ElementsAre("ember_set_channel(20)"));
    EXPECT_EQ(screen->focused(), "20");
    emit("ready");
    EXPECT_THAT(content(), fresh);
}

TEST_F(RxPage, CountShowsTheFirstWordOfTheStatistics) {
    const std::vector<std::pair<const char*, const char*>> answers = {
        {"('57 12 0', 0)", "Received Packets: 57"}, {"('  8\\tpackets\\n', 0)", "Received Packets: 8"},
        {"('', 0)", "Received Packets: "},          {"(' \\t\\n ', 0)", "Received Packets: "},
        {"('9', 4)", "Received Packets: "},         {"(0,)", "Received Packets: "},
        {"('<b>&', 0)", "Received Packets: <b>&"},
    };
    for (const auto& [answer, text] : answers) {
        radio.answer("ember_get_rx_statistics", answer);
        activate("Count Received Packets");
        EXPECT_EQ(count(), text) << answer;
    }
    EXPECT_THAT(log.messages_of("RXTestView.cpp: countReceivedPacketsCb"),
                ElementsAre("failed to get rx statistics", "failed to get rx statistics"));
    radio.answer("ember_get_rx_statistics", "('57', 0)");
    for (const auto& [code, text] : {std::pair("(4,)", "Reset Failed"), std::pair("(0,)", "0")}) {
        activate("Count Received Packets");
        EXPECT_EQ(count(), "Received Packets: 57");
        radio.answer("ember_reset_rx_statistics", code);
        activate("Reset Count");
        EXPECT_EQ(count(), std::string("Received Packets: ") + text);
    }
}

TEST_F(RxPage, RefusedStopLeavesThePage) {
    radio.answer("ember_set_channel", "(5,)");
    activate("11");
    screen->press("Return");
    EXPECT_EQ(screen->focused(), "[11]");
    screen->press("XF86Back");
    radio.answer("ember_stop", "(1,)");
    activate("Stop");
    EXPECT_THAT(content(), Contains("Reset Count"));
    EXPECT_THAT(log.messages_of("RXTestView.cpp: stopButtonPressedCb"), ElementsAre("stop test failed"));
    radio.answer("ember_stop", "(0,)");
    activate("Stop");
    EXPECT_THAT(content(), ElementsAre("Start RX Test"));
    EXPECT_EQ(screen->focused(), "Start RX Test");
}

} // namespace
