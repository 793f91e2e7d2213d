/** The receive test: counts the packets received on a channel. */
#pragma once

#include "CSingleton.h"
#include "ContentView.h"
#include "WidgetHandle.h"

#include <Elementary.h>

class RXTestView : public CSingleton<RXTestView>, public ContentView {
public:
    ~RXTestView() override = default;

    void Destroy() override;
    void ShowStartPage() override;
    void ShowTestPage() override;

private:
    friend class CSingleton<RXTestView>;
    RXTestView() = default;

    void createRxTestStartButton();
    void createReceivedPacketsLabel();
    void createCountReceivedPacketsButton();
    void createResetReceivedPacketCount();
    void createChannelLabel();
    void createSetChannelButton();
    void createStopButton();
    void createChannelPickerPopup();

    // "pressed" callbacks of the buttons and key callback of the picker.
    void rxTestStartButtonPressedCb();
    void countReceivedPacketsCb();
    void resetReceivedPacketCountCb();
    void setChannelButtonPressedCb();
    void stopButtonPressedCb();
    void channelSpinnerPressedCb(const Evas_Event_Key_Down& key);

    WidgetHandle startButton;
    WidgetHandle setChannelButton;
    WidgetHandle channelSpinner;
    WidgetHandle receivedPacketsLabel;
    WidgetHandle countReceivedPacketsButton;
    WidgetHandle channelPopup;
};
