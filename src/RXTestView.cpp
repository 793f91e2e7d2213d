#include "RXTestView.h"

#include "GuardedCallback.h"
#include "model/ncp_requester.h"

#include <platform/vell.h>

#include <sstream>
#include <string>

namespace {

/** The first word of the statistics is the number of received packets. */
std::string firstWord(const std::string& text) {
    std::istringstream words(text);
    std::string word;
    words >> word;
    return word;
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
        startButton = addButton("Start RX Test", GUARDED(rxTestStartButtonPressedCb), this);
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
            addButton("Count Received Packets", GUARDED(countReceivedPacketsCb), this);
    });
}

void RXTestView::createResetReceivedPacketCount() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { addButton("Reset Count", GUARDED(resetReceivedPacketCountCb), this); });
}

void RXTestView::createChannelLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { createTextbox(contentLayout, "Channel: "); });
}

void RXTestView::createSetChannelButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setChannelButton = addButton("11", GUARDED(setChannelButtonPressedCb), this);
        focusWhenShown(setChannelButton);
    });
}

void RXTestView::createStopButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] { addButton("Stop", GUARDED(stopButtonPressedCb), this); });
}

void RXTestView::createChannelPickerPopup() {
    createPicker(LOG_ORIGIN(__func__), {"Zigbee TX Channel", 11, 26, GUARDED(channelSpinnerPressedCb)},
                 channelPopup, channelSpinner, this);
}

void RXTestView::rxTestStartButtonPressedCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    auto* const view = static_cast<RXTestView*>(data);
    if (!bringUpRadio(LOG_ORIGIN(__func__), view->startButton))
        return;
    view->channelPopup.deleteWidget();
    LOG_ERROR("Please Wait...");
}

void RXTestView::countReceivedPacketsCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    std::string statistics;
    if (!ncp_requester::getInstance().ember_get_rx_statistics(statistics)) {
        LOG_ERROR("failed to get rx statistics");
        return;
    }
    const std::string text = "Received Packets: " + firstWord(statistics);
    elm_vell_textbox_text_set(static_cast<RXTestView*>(data)->receivedPacketsLabel, text.c_str());
}

void RXTestView::resetReceivedPacketCountCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    const bool reset = ncp_requester::getInstance().ember_reset_rx_statistics();
    elm_vell_textbox_text_set(static_cast<RXTestView*>(data)->receivedPacketsLabel,
                              reset ? "Received Packets: 0" : "Received Packets: Reset Failed");
}

void RXTestView::setChannelButtonPressedCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    auto* const view = static_cast<RXTestView*>(data);
    if (view->channelPopup == nullptr)
        view->createChannelPickerPopup();
    view->showPopup(view->channelPopup);
}

void RXTestView::channelSpinnerPressedCb(void* data, Evas*, Evas_Object*, void* event) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data, event))
        return;
    auto* const view = static_cast<RXTestView*>(data);
    view->handlePickerKey(LOG_ORIGIN(__func__), *static_cast<Evas_Event_Key_Down*>(event),
                          {"channel", &ncp_requester::ember_set_channel, false}, view->channelSpinner,
                          view->setChannelButton);
}

void RXTestView::stopButtonPressedCb(void* data, Evas_Object*, void*) {
    if (inputIsThere(LOG_ORIGIN(__func__), data))
        static_cast<RXTestView*>(data)->stopTest(LOG_ORIGIN(__func__));
}
