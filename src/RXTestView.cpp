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
        startButton = addButton("Start RX Test", GUARDED(rxTestStartButtonPressedCb));
        focusWhenShown(startButton);
    });
}

void RXTestView::createReceivedPacketsLabel() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { receivedPacketsLabel = createTextbox(contentLayout, "Received Packets: ?"); });
}

void RXTestView::createCountReceivedPacketsButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        countReceivedPacketsButton = addButton("Count Received Packets", GUARDED(countReceivedPacketsCb));
    });
}

void RXTestView::createResetReceivedPacketCount() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { addButton("Reset Count", GUARDED(resetReceivedPacketCountCb)); });
}

void RXTestView::createChannelLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { createTextbox(contentLayout, "Channel: "); });
}

void RXTestView::createSetChannelButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setChannelButton = addButton("11", GUARDED(setChannelButtonPressedCb));
        focusWhenShown(setChannelButton);
    });
}

void RXTestView::createStopButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] { addButton("Stop", GUARDED(stopButtonPressedCb)); });
}

void RXTestView::createChannelPickerPopup() {
    createPicker(LOG_ORIGIN(__func__), {"Zigbee TX Channel", 11, 26, GUARDED(channelSpinnerPressedCb),
                                        channelPopup, channelSpinner});
}

void RXTestView::rxTestStartButtonPressedCb(void* data, Evas_Object*, void*) {
    if (auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data))
        startTest(LOG_ORIGIN(__func__), view->startButton, {&view->channelPopup});
}

void RXTestView::countReceivedPacketsCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    std::string statistics;
    if (!ncp_requester::getInstance().ember_get_rx_statistics(statistics)) {
        LOG_ERROR("failed to get rx statistics");
        return;
    }
    const std::string text = "Received Packets: " + firstWord(statistics);
    elm_vell_textbox_text_set(view->receivedPacketsLabel, text.c_str());
}

void RXTestView::resetReceivedPacketCountCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    const bool reset = ncp_requester::getInstance().ember_reset_rx_statistics();
    elm_vell_textbox_text_set(view->receivedPacketsLabel,
                              reset ? "Received Packets: 0" : "Received Packets: Reset Failed");
}

void RXTestView::setChannelButtonPressedCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    if (view->channelPopup == nullptr)
        view->createChannelPickerPopup();
    view->showPopup(view->channelPopup);
}

void RXTestView::channelSpinnerPressedCb(void* data, Evas*, Evas_Object*, void* event) {
    auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data, event);
    if (view == nullptr)
        return;
    view->handlePickerKey(LOG_ORIGIN(__func__), *static_cast<Evas_Event_Key_Down*>(event),
                          {"channel", &ncp_requester::ember_set_channel, false}, view->channelSpinner,
                          view->setChannelButton);
}

void RXTestView::stopButtonPressedCb(void* data, Evas_Object*, void*) {
    if (auto* const view = viewOf<RXTestView>(LOG_ORIGIN(__func__), data))
        view->stopTest(LOG_ORIGIN(__func__));
}
