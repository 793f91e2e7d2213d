/** The transmit test: sends a continuous stream on a channel at a power level. */
#pragma once

#include "CSingleton.h"
#include "ContentView.h"
#include "WidgetHandle.h"

#include <Elementary.h>

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

    /** Locks or unlocks the power and channel buttons; they cannot take the focus while the stream runs. */
    void allowSettings(bool allowed);

    // "pressed" callbacks of the buttons and key callbacks of the pickers.
    void txTestStartButtonClickedCb();
    void setPowerButtonPressedCb();
    void setChannelButtonPressedCb();
    void streamButtonPressedCb();
    void stopTestButtonPressedCb();
    void powerSpinnerPressedCb(const Evas_Event_Key_Down& key);
    void channelSpinnerPressedCb(const Evas_Event_Key_Down& key);

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
