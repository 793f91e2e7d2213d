/** The transmit test: power, channel and a continuous stream. */
#pragma once

#include "CSingleton.h"
#include "ContentView.h"

class TXTestView : public CSingleton<TXTestView>, public ContentView {
public:
    ~TXTestView() override = default;

    bool Create(Evas_Object* parent, Evas_Object* content) override;
    void Destroy() override;
    void ShowStartPage() override;
    void ShowTestPage() override;

private:
    friend class CSingleton<TXTestView>;
    TXTestView() = default;

    void createTxTestStartButton();
    void createPowerLabel();
    void createSetPowerButton();
    void createChannelLabel();
    void createSetChannelButton();
    void createStartStreamButton();
    void createStopTestButton();
    bool createPowerPickerPopup();
    bool createChannelPickerPopup();

    /** Bars power and channel from the focus while the stream runs. */
    void allowSettings(bool allowed);

    // "pressed" callbacks of the buttons and key callbacks of the pickers; their data is the `ContentView*`.
    static void txTestStartButtonClickedCb(void* data, Evas_Object* button, void* event);
    static void setPowerButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void setChannelButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void streamButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void stopTestButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void powerSpinnerPressedCb(void* data, Evas* canvas, Evas_Object* spinner, void* event);
    static void channelSpinnerPressedCb(void* data, Evas* canvas, Evas_Object* spinner, void* event);

    WidgetHandle powerLabel;
    WidgetHandle startButton;
    WidgetHandle setPowerButton;
    WidgetHandle channelLabel;
    WidgetHandle setChannelButton;
    WidgetHandle streamButton;
    WidgetHandle powerSpinner;
    WidgetHandle channelSpinner;
    WidgetHandle powerPopup;
    WidgetHandle channelPopup;
};
