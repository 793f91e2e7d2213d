#include "TXTestView.h"

#include "GuardedCallback.h"
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
        startButton = addButton("Start TX Test", GUARDED(txTestStartButtonClickedCb));
        focusWhenShown(startButton);
    });
}

void TXTestView::createPowerLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { powerLabel = createTextbox(contentLayout, "Power: "); });
}

void TXTestView::createSetPowerButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        setPowerButton = addButton("Set Power", GUARDED(setPowerButtonPressedCb));
        focusWhenShown(setPowerButton);
    });
}

void TXTestView::createChannelLabel() {
    runPageStep(LOG_ORIGIN(__func__), [this] { channelLabel = createTextbox(contentLayout, "Channel: "); });
}

void TXTestView::createSetChannelButton() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { setChannelButton = addButton("Set Channel", GUARDED(setChannelButtonPressedCb)); });
}

void TXTestView::createStartStreamButton() {
    runPageStep(LOG_ORIGIN(__func__),
                [this] { streamButton = addButton("Start Stream", GUARDED(streamButtonPressedCb)); });
}

void TXTestView::createStopTestButton() {
    runPageStep(LOG_ORIGIN(__func__), [this] { addButton("Stop Test", GUARDED(stopTestButtonPressedCb)); });
}

bool TXTestView::createPowerPickerPopup() {
    return createPicker(LOG_ORIGIN(__func__),
                        {"Zigbee TX Power", 0, 20, GUARDED(powerSpinnerPressedCb), powerPopup, powerSpinner});
}

bool TXTestView::createChannelPickerPopup() {
    return createPicker(LOG_ORIGIN(__func__), {"Zigbee TX Channel", 11, 26, GUARDED(channelSpinnerPressedCb),
                                               channelPopup, channelSpinner});
}

void TXTestView::allowSettings(bool allowed) {
    elm_object_focus_allow_set(setChannelButton, allowed);
    elm_object_focus_allow_set(setPowerButton, allowed);
}

void TXTestView::txTestStartButtonClickedCb(void* data, Evas_Object*, void*) {
    if (auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data))
        startTest(LOG_ORIGIN(__func__), view->startButton, {&view->powerPopup, &view->channelPopup});
}

void TXTestView::setPowerButtonPressedCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    if (view->powerPopup == nullptr && view->createPowerPickerPopup())
        LOG_INFO("power picker popoup created!");
    view->showPopup(view->powerPopup);
}

void TXTestView::setChannelButtonPressedCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    if (view->channelPopup == nullptr) {
        view->createChannelPickerPopup();
        LOG_INFO("channel picker popoup created!");
    }
    view->showPopup(view->channelPopup);
}

void TXTestView::powerSpinnerPressedCb(void* data, Evas*, Evas_Object*, void* event) {
    auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data, event);
    if (view == nullptr)
        return;
    view->handlePickerKey(LOG_ORIGIN(__func__), *static_cast<Evas_Event_Key_Down*>(event),
                          {"power", &ncp_requester::ember_set_power, true}, view->powerSpinner,
                          view->setPowerButton);
}

void TXTestView::channelSpinnerPressedCb(void* data, Evas*, Evas_Object*, void* event) {
    auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data, event);
    if (view == nullptr)
        return;
    view->handlePickerKey(LOG_ORIGIN(__func__), *static_cast<Evas_Event_Key_Down*>(event),
                          {"channel", &ncp_requester::ember_set_channel, true}, view->channelSpinner,
                          view->setChannelButton);
}

void TXTestView::streamButtonPressedCb(void* data, Evas_Object*, void*) {
    auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data);
    if (view == nullptr)
        return;
    const std::string_view text = elm_vell_button_text_get(view->streamButton);
    if (text == "Start Stream") {
        if (!ncp_requester::getInstance().ember_start_stream()) {
            LOG_ERROR("start Stream failed");
            return;
        }
        elm_vell_button_text_set(view->streamButton, "Stop Stream");
        view->allowSettings(false);
    } else if (text == "Stop Stream") {
        if (!ncp_requester::getInstance().ember_stop_stream()) {
            LOG_ERROR("stop Stream failed");
            return;
        }
        elm_vell_button_text_set(view->streamButton, "Start Stream");
        view->allowSettings(true);
    }
}

void TXTestView::stopTestButtonPressedCb(void* data, Evas_Object*, void*) {
    if (auto* const view = viewOf<TXTestView>(LOG_ORIGIN(__func__), data))
        view->stopTest(LOG_ORIGIN(__func__));
}
