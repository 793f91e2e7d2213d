#include "support/pages.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class TxPage : public test::Pages {
protected:
    TxPage() {
        open("TX Test");
        asked();
    }
};

struct Picker {
    const char* button;
    const char* title;
    int low;
    int high;
    const char* method;
    const char* failure;
};
const std::vector<Picker> pickers = {
    {"Set Power", "popup Zigbee TX Power", 0, 20, "ember_set_power", "failed to set power"},
    {"Set Channel", "popup Zigbee TX Channel", 11, 26, "ember_set_channel", "failed to set channel"},
};

std::string shown(int value) { return "[" + std::to_string(value) + "]"; }

TEST_F(TxPage, ItemsInOrderWithSetPowerFocused) {
    EXPECT_THAT(content(),
                ElementsAre("Power: ", "Set Power", "Channel: ", "Set Channel", "Start Stream", "Stop Test"));
    EXPECT_EQ(screen->focused(), "Set Power");
    emit("ready");
    EXPECT_EQ(content().size(), 6U);
}

TEST_F(TxPage, ReturnSendsTheValueShownAndClosesThePicker) {
    for (const Picker& picker : pickers) {
        activate(picker.button);
        EXPECT_NE(screen->find(picker.title), nullptr);
        EXPECT_EQ(screen->focused(), shown(picker.low)) << picker.title;
        screen->press("Down");
        EXPECT_EQ(screen->focused(), shown(picker.low));
        screen->press("Up", 4);
        for (const char* const other : {"KP_Enter", "Tab", "space", "5", "XF86Red"})
            screen->press(other);
        EXPECT_EQ(screen->focused(), shown(picker.low + 4));
        EXPECT_THAT(asked(), IsEmpty());
        screen->press("Return");
        const std::string chosen = std::to_string(picker.low + 4);
        EXPECT_THAT(asked(), ElementsAre(std::string(picker.method) + "(" + chosen + ")"));
        EXPECT_EQ(screen->find(picker.title), nullptr);
        EXPECT_EQ(screen->focused(), chosen);
        // The same picker again, at the value chosen, up to its end.
        screen->press("Return");
        EXPECT_EQ(screen->focused(), shown(picker.low + 4));
        screen->press("Right", 30);
        EXPECT_EQ(screen->focused(), shown(picker.high));
        screen->press("XF86Back");
        EXPECT_EQ(screen->focused(), chosen);
    }
    EXPECT_THAT(content(), ElementsAre("Power: ", "4", "Channel: ", "15", "Start Stream", "Stop Test"));
    EXPECT_THAT(
        log.messages(),
        testing::IsSupersetOf({"I TXTestView.cpp: setPowerButtonPressedCb > power picker popoup created!",
                               "I TXTestView.cpp: setChannelButtonPressedCb > channel picker popoup created!",
                               "I TXTestView.cpp: powerSpinnerPressedCb > power value [4]",
                               "I TXTestView.cpp: channelSpinnerPressedCb > channel value [15]"}));
}

TEST_F(TxPage, RefusedValueLeavesThePickerOpen) {
    for (const Picker& picker : pickers) {
        radio.answer(picker.method, "(6,)");
        activate(picker.button);
        screen->press("Up");
        screen->press("Return");
        EXPECT_EQ(screen->focused(), shown(picker.low + 1));
        EXPECT_THAT(content(), Contains(picker.button));
        EXPECT_THAT(log.text(), testing::HasSubstr(picker.failure));
        radio.answer(picker.method, "(0,)");
        screen->press("Return");
        EXPECT_EQ(screen->focused(), std::to_string(picker.low + 1));
    }
}

TEST_F(TxPage, StreamBarsTheSettingsAndFreesThemAgain) {
    const auto focusable = [this](const char* text) {
        return elm_object_focus_allow_get(screen->find(text)) != EINA_FALSE;
    };
    for (int time = 0; time < 2; ++time) {
        radio.answer("ember_start_stream", "(7,)");
        activate("Start Stream");
        EXPECT_THAT(content(), Contains("Start Stream"));
        EXPECT_TRUE(focusable("Set Power") && focusable("Set Channel"));
        radio.answer("ember_start_stream", "(0,)");
        activate("Start Stream");
        EXPECT_EQ(screen->focused(), "Stop Stream");
        EXPECT_FALSE(focusable("Set Power") || focusable("Set Channel"));
        screen->press("Up"); // past both of them, to the tabs
        EXPECT_THAT(screen->focused(), testing::AnyOf("TX Test", "RX Test", "Exit"));
        for (const char* const failing : {"ember_stop_stream", "ember_stop"}) {
            radio.answer(failing, "(8,)");
            activate(failing == std::string("ember_stop") ? "Stop Test" : "Stop Stream");
            EXPECT_THAT(content(), Contains("Stop Stream"));
            EXPECT_FALSE(focusable("Set Power") || focusable("Set Channel"));
            radio.answer(failing, "(0,)");
        }
        activate("Stop Stream");
        EXPECT_EQ(screen->focused(), "Start Stream");
        EXPECT_TRUE(focusable("Set Power") && focusable("Set Channel"));
    }
    EXPECT_THAT(log.messages(),
                testing::IsSupersetOf({"E TXTestView.cpp: streamButtonPressedCb > start Stream failed",
                                       "E TXTestView.cpp: streamButtonPressedCb > stop Stream failed",
                                       "E TXTestView.cpp: stopTestButtonPressedCb > stop test failed"}));
    activate("Stop Test");
    EXPECT_THAT(content(), ElementsAre("Start TX Test"));
    EXPECT_EQ(screen->focused(), "Start TX Test");
}

} // namespace
