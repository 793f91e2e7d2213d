#include "support/road.h"

/** The radio refuses; the page says so, or stays as it was. */
class RefusalRoad : public Road {
protected:
    /** Presses Return on a button that stays as it is. */
    void press_in_vain(const std::string& message) {
        const long before = log_.count(message);
        operator_.press("Return");
        expect_soon(message, [&] { return log_.count(message) > before; });
    }
};

TEST_F(RefusalRoad, APickerStaysOpenUntilTheRadioAccepts) {
    open_tx_test();
    for (const char* const refusal : {"code 5", "error"}) {
        let_host_answer("ember_set_power", refusal);
        if (operator_.screen().shows("Set Power"))
            open_picker(power_picker, 0, 9);
        press_in_vain("failed to set power");
        EXPECT_TRUE(operator_.screen().shows(power_picker));
        operator_.wait_for_value(9);
    }
    let_host_answer("ember_set_power", "normal");
    choose(power_picker, 9);

    go("Down", "Set Channel");
    let_host_answer("ember_set_channel", "code 5");
    open_picker(channel_picker, 11, 12);
    press_in_vain("failed to set channel");
    EXPECT_TRUE(operator_.screen().shows(channel_picker));
    operator_.press("XF86Back");
    operator_.wait_for_focus("Set Channel");
}

TEST_F(RefusalRoad, TheStreamButtonKeepsItsTextAndTheTestGoesOn) {
    open_tx_test();
    go("Down", "Start Stream");
    let_host_answer("ember_start_stream", "code 6");
    press_in_vain("start Stream failed");
    EXPECT_TRUE(operator_.screen().shows("Start Stream"));
    EXPECT_TRUE(operator_.is_focusable("Set Power"));

    let_host_answer("ember_start_stream", "normal");
    enter("Stop Stream");
    let_host_answer("ember_stop_stream", "wrong signature");
    press_in_vain("stop Stream failed");
    EXPECT_TRUE(operator_.screen().shows("Stop Stream"));
    EXPECT_FALSE(operator_.is_focusable("Set Power"));

    go("Down", "Stop Test");
    let_host_answer("ember_stop", "code 3");
    press_in_vain("stop test failed");
    EXPECT_TRUE(operator_.screen().shows("Stop Stream"));
    let_host_answer("ember_stop", "normal");
    enter("Start TX Test");
}

TEST_F(RefusalRoad, TheReceivedPacketsSayWhatFailed) {
    open_rx_test();
    go("Up", "Count Received Packets");
    let_host_answer("ember_get_rx_statistics", "code 7");
    press_in_vain("failed to get rx statistics");
    EXPECT_TRUE(operator_.screen().shows("Received Packets: ?"));
    go("Down", "Reset Count");
    let_host_answer("ember_reset_rx_statistics", "error");
    operator_.press("Return");
    operator_.wait_for("Received Packets: Reset Failed");
    go("Down", "Stop");
    let_host_answer("ember_stop", "code 1");
    press_in_vain("stop test failed");
    EXPECT_TRUE(operator_.screen().shows("Received Packets: Reset Failed"));
}
