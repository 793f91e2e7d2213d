#include "TXTestView.h"

#include "Log.h"
#include "ViewCallback.h"
#include "WidgetHelpers.h"
#include "model/ncp_requester.h"

#include <platform/vell.h>

#include <string_view>

bool TXTestView::Create(Evas_Object* parent, Evas_Object* content) {
    LOG_ERROR("TX Test ContentView Create");
    return ContentView::Create(parent, content);
}

void TXTestView::Destroy() {
    for (WidgetHandle* const widget :
         {&powerLabel, &startButton, &setPowerButton, &channelLabel, &setChannelButton, &streamButton,
          &powerSpinner, &channelSpinner, &powerPopup, &channelPopup})
        widget->deleteWidget();
}

void TXTestView::ShowStartPage() {
    clearForStartPage();
    createTxTestStartButton();
}

void TXTestView::ShowTestPage() {
    clearForTestPage();
    createPowerLabel();
    createSetPowerButton();
    createChannelLabel();
    createSetChannelButton();
    createStartStreamButton();
    createStopTestButton();
}

void TXTestView::createTxTestStartButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        startButton = addButton("Start TX Test", PRESSED(TXTestView, txTestStartButtonClickedCb));
        focusWhenShown(startButton);
    });
}

void TXTestView::createPowerLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { powerLabel = createTextbox(contentLayout, "Power: "); });
}

void TXTestView::createSetPowerButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setPowerButton = addButton("Set Power", PRESSED(TXTestView, setPowerButtonPressedCb));
        focusWhenShown(setPowerButton);
    });
}

void TXTestView::createChannelLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { channelLabel = createTextbox(contentLayout, "Channel: "); });
}

void TXTestView::createSetChannelButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setChannelButton = addButton("Set Channel", PRESSED(TXTestView, setChannelButtonPressedCb));
    });
}

void TXTestView::createStartStreamButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        streamButton = addButton("Start Stream", PRESSED(TXTestView, streamButtonPressedCb));
    });
}

void TXTestView::createStopTestButton() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { addButton("Stop Test", PRESSED(TXTestView, stopTestButtonPressedCb)); });
}

bool TXTestView::createPowerPickerPopup() {
    return createPicker(LOG_ORIGIN(__func__), powerPicker, powerPopup, powerSpinner,
                        KEY_DOWN(TXTestView, powerSpinnerPressedCb));
}

bool TXTestView::createChannelPickerPopup() {
    return createPicker(LOG_ORIGIN(__func__), channelPicker, channelPopup, channelSpinner,
                        KEY_DOWN(TXTestView, channelSpinnerPressedCb));
}

void TXTestView::allowSettings(bool allowed) {
    elm_object_focus_allow_set(setChannelButton, allowed);
    elm_object_focus_allow_set(setPowerButton, allowed);
}

void TXTestView::txTestStartButtonClickedCb() {
    startTest(LOG_ORIGIN(__func__), startButton, {&powerPopup, &channelPopup});
}

void TXTestView::setPowerButtonPressedCb() {
    if (powerPopup == nullptr && createPowerPickerPopup())
        LOG_INFO("power picker popoup created!");
    showPopup(powerPopup);
}

void TXTestView::setChannelButtonPressedCb() {
    if (channelPopup == nullptr) {
        createChannelPickerPopup();
        LOG_INFO("channel picker popoup created!");
    }
    showPopup(channelPopup);
}

void TXTestView::powerSpinnerPressedCb(const Evas_Event_Key_Down& key) {
    if (const auto power = chosenNumber(key, powerSpinner)) {
        LOG_INFO("power value [%d]", *power);
        sendNumber(LOG_ORIGIN(__func__), powerPicker, *power, setPowerButton);
    }
}

void TXTestView::channelSpinnerPressedCb(const Evas_Event_Key_Down& key) {
    if (const auto channel = chosenNumber(key, channelSpinner)) {
        LOG_INFO("channel value [%d]", *channel);
        sendNumber(LOG_ORIGIN(__func__), channelPicker, *channel, setChannelButton);
    }
}

void TXTestView::streamButtonPressedCb() {
    const std::string_view text = buttonText(streamButton);
    if (text == "Start Stream") {
        if (!ncp_requester::getInstance().ember_start_stream()) {
            LOG_ERROR("start Stream failed");
            return;
        }
        elm_vell_button_text_set(streamButton, "Stop Stream");
        allowSettings(false);
    } else if (text == "Stop Stream") {
        if (!ncp_requester::getInstance().ember_stop_stream()) {
            LOG_ERROR("stop Stream failed");
            return;
        }
        elm_vell_button_text_set(streamButton, "Start Stream");
        allowSettings(true);
    }
}

void TXTestView::stopTestButtonPressedCb() {
    if (!stopTest(LOG_ORIGIN(__func__)))
        return;
    clearForStartPage();
    ShowStartPage();
}
