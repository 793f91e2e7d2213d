/** The receive test: received packets counted and reset on a channel. */
#pragma once

#include "CSingleton.h"
#include "ContentView.h"

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

    // "pressed" callbacks of the buttons and the picker's key callback; their data is the `ContentView*`.
    static void rxTestStartButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void countReceivedPacketsCb(void* data, Evas_Object* button, void* event);
    static void resetReceivedPacketCountCb(void* data, Evas_Object* button, void* event);
    static void setChannelButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void stopButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void channelSpinnerPressedCb(void* data, Evas* canvas, Evas_Object* spinner, void* event);

    WidgetHandle startButton;
    WidgetHandle setChannelButton;
    WidgetHandle channelSpinner;
    WidgetHandle receivedPacketsLabel;
    WidgetHandle countReceivedPacketsButton;
    WidgetHandle channelPopup;
};
