#include "RXTestView.h"

#include "Log.h"
#include "ViewCallback.h"
#include "WidgetHelpers.h"
#include "model/ncp_requester.h"

#include <platform/vell.h>

#include <string>

namespace {

/** Returns the first word of the statistics: the number of received packets. */
std::string firstWord(const std::string& text) {
    constexpr const char* space = " \t\n\v\f\r";
    const std::size_t begin = text.find_first_not_of(space);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_first_of(space, begin) - begin);
}

} // namespace

void RXTestView::Destroy() {
    for (WidgetHandle* const widget : {&startButton, &setChannelButton, &channelSpinner,
                                       &receivedPacketsLabel, &countReceivedPacketsButton, &channelPopup})
        widget->deleteWidget();
}

void RXTestView::ShowStartPage() {
    clearForStartPage();
    createRxTestStartButton();
}

void RXTestView::ShowTestPage() {
    clearForTestPage();
    createReceivedPacketsLabel();
    createCountReceivedPacketsButton();
    createResetReceivedPacketCount();
    createChannelLabel();
    createSetChannelButton();
    createStopButton();
}

void RXTestView::createRxTestStartButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        startButton = addButton("Start RX Test", PRESSED(RXTestView, rxTestStartButtonPressedCb));
        focusWhenShown(startButton);
    });
}

void RXTestView::createReceivedPacketsLabel() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { receivedPacketsLabel = createTextbox(contentLayout, "Received Packets: ?"); });
}

void RXTestView::createCountReceivedPacketsButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        countReceivedPacketsButton =
            addButton("Count Received Packets", PRESSED(RXTestView, countReceivedPacketsCb));
    });
}

void RXTestView::createResetReceivedPacketCount() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { addButton("Reset Count", PRESSED(RXTestView, resetReceivedPacketCountCb)); });
}

void RXTestView::createChannelLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { createTextbox(contentLayout, "Channel: "); });
}

void RXTestView::createSetChannelButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setChannelButton = addButton("11", PRESSED(RXTestView, setChannelButtonPressedCb));
        focusWhenShown(setChannelButton);
    });
}

void RXTestView::createStopButton() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { addButton("Stop", PRESSED(RXTestView, stopButtonPressedCb)); });
}

void RXTestView::createChannelPickerPopup() {
    createPicker(LOG_ORIGIN(__func__), channelPicker, channelPopup, channelSpinner,
                 KEY_DOWN(RXTestView, channelSpinnerPressedCb));
}

void RXTestView::rxTestStartButtonPressedCb() {
    startTest(LOG_ORIGIN(__func__), startButton, {&channelPopup});
}

void RXTestView::countReceivedPacketsCb() {
    std::string statistics;
    if (!ncp_requester::getInstance().ember_get_rx_statistics(statistics)) {
        LOG_ERROR("failed to get rx statistics");
        return;
    }
    const std::string text = "Received Packets: " + firstWord(statistics);
    elm_vell_textbox_text_set(receivedPacketsLabel, text.c_str());
}

void RXTestView::resetReceivedPacketCountCb() {
    const bool reset = ncp_requester::getInstance().ember_reset_rx_statistics();
    elm_vell_textbox_text_set(receivedPacketsLabel,
                              reset ? "Received Packets: 0" : "Received Packets: Reset Failed");
}

void RXTestView::setChannelButtonPressedCb() {
    if (channelPopup == nullptr)
        createChannelPickerPopup();
    showPopup(channelPopup);
}

void RXTestView::channelSpinnerPressedCb(const Evas_Event_Key_Down& key) {
    if (const auto channel = chosenNumber(key, channelSpinner))
        sendNumber(LOG_ORIGIN(__func__), channelPicker, *channel, setChannelButton);
}

void RXTestView::stopButtonPressedCb() {
    if (stopTest(LOG_ORIGIN(__func__)))
        ShowStartPage();
}
