/** Base class of the test pages, which fill the main page's content area. */
#pragma once

#include "Log.h"
#include "WidgetHandle.h"
#include "model/ncp_requester.h"

#include <Elementary.h>
#include <initializer_list>
#include <optional>

/** A radio setting whose number the operator chooses in a popup. */
struct Picker {
    const char* name; /**< for log messages */
    const char* title;
    int minimum;
    int maximum;
    bool (ncp_requester::*command)(int); /**< sends the number to the radio */
};

inline constexpr Picker powerPicker{"power", "Zigbee TX Power", 0, 20, &ncp_requester::ember_set_power};
inline constexpr Picker channelPicker{"channel", "Zigbee TX Channel", 11, 26,
                                      &ncp_requester::ember_set_channel};

/**
 * A test: a start page with one button, and a test page.
 *
 * Widgets belong to the toolkit's object tree; a view keeps handles. Popups are children of `parentLayout`,
 * so they survive when `contentLayout` is cleared.
 */
class ContentView {
public:
    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;

    /** Sets the popups' parent and the content area; returns true. */
    virtual bool Create(Evas_Object* parent, Evas_Object* content);
    /** Deletes all widgets to which the view has handles. */
    virtual void Destroy() = 0;
    /** Clears the content area and shows the start button. */
    virtual void ShowStartPage() = 0;
    /** Clears the content area and builds the test page. Start the radio first. */
    virtual void ShowTestPage() = 0;

    /** Dismisses the open popup, if any; the popup can be shown again. */
    void dismissPopup();

    WidgetHandle contentLayout;
    WidgetHandle parentLayout;
    WidgetHandle shownPopup; /**< the open popup, or null */

protected:
    ContentView() = default;
    ~ContentView() = default;

    /** Show callback that focuses the widget. */
    static void setFocusAfterShowCb(void* data, Evas* canvas, Evas_Object* widget, void* event);

    /** Focuses the widget each time it is shown. */
    static void focusWhenShown(Evas_Object* widget);

    /** Clears the content area and lays it out for a start page. */
    void clearForStartPage() const;
    /** Clears the content area and lays it out for a test page. */
    void clearForTestPage() const;

    /** Adds a button to the content area; its "pressed" callback gets the view as data. */
    Evas_Object* addButton(const char* text, Evas_Smart_Cb pressed);

    /**
     * Starts the radio host stack, blocking, and shows the progress on the start button. If the stack started,
     * deletes the test's picker popups, so that they are recreated with initial values.
     *
     * @throw std::runtime_error from `prepare_background_app`.
     */
    static void startTest(const LogOrigin& origin, Evas_Object* startButton,
                          std::initializer_list<WidgetHandle*> pickerPopups);

    /**
     * Creates a picker's popup and spinner; `keyCallback` receives the spinner's key presses, with the view as data.
     *
     * @return false if a widget cannot be created (logged for `origin`).
     */
    bool createPicker(const LogOrigin& origin, const Picker& picker, WidgetHandle& popup,
                      WidgetHandle& spinner, Evas_Object_Event_Cb keyCallback);

    /** Shows a popup and records it in `shownPopup`. */
    void showPopup(Evas_Object* popup);

    /** Returns the spinner's number if the key is Return, else nothing. */
    static std::optional<int> chosenNumber(const Evas_Event_Key_Down& key, const Evas_Object* spinner);

    /** Sends the number to the radio; on success shows it on the button and closes the picker. */
    void sendNumber(const LogOrigin& origin, const Picker& picker, int number, Evas_Object* button);

    /** Stops the test on the radio; returns false (logged for `origin`) on failure. */
    static bool stopTest(const LogOrigin& origin);

private:
    /** Restarts the radio stack; returns false if it did not start. */
    static bool bringUpRadio(const LogOrigin& origin, Evas_Object* startButton);
};
