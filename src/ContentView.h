/** A test page in the main page's content area, and what the test pages share. */
#pragma once

#include "Log.h"
#include "WidgetHandle.h"
#include "model/ncp_requester.h"

#include <Elementary.h>
#include <initializer_list>
#include <optional>

/** A number that the operator chooses in a popup and the radio is given. */
struct Picker {
    const char* name; /**< for the messages */
    const char* title;
    int minimum;
    int maximum;
    bool (ncp_requester::*command)(int); /**< gives the number to the radio */
};

inline constexpr Picker powerPicker{"power", "Zigbee TX Power", 0, 20, &ncp_requester::ember_set_power};
inline constexpr Picker channelPicker{"channel", "Zigbee TX Channel", 11, 26,
                                      &ncp_requester::ember_set_channel};

/**
 * One test: a start page with one button, and a test page.
 *
 * Widgets belong to the toolkit's object tree; a view keeps handles. Popups are children of `parentLayout`,
 * so that clearing `contentLayout` leaves them.
 */
class ContentView {
public:
    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;

    /** Gives the view the parent of its popups and the content area that it fills; returns true. */
    virtual bool Create(Evas_Object* parent, Evas_Object* content);
    /** Deletes every widget that the view holds. */
    virtual void Destroy() = 0;
    /** Clears the content area and shows the test's start button. */
    virtual void ShowStartPage() = 0;
    /** Clears the content area and builds the test page; the radio was asked to start before. */
    virtual void ShowTestPage() = 0;

    /** Dismisses the popup that is showing, if there is one; it is kept and can be shown again. */
    void dismissPopup();

    WidgetHandle contentLayout;
    WidgetHandle parentLayout;
    WidgetHandle shownPopup; /**< the popup showing now, else null */

protected:
    ContentView() = default;
    ~ContentView() = default;

    /** "Shown" callback of the widget that takes the focus. */
    static void setFocusAfterShowCb(void* data, Evas* canvas, Evas_Object* widget, void* event);

    /** Has the widget take the focus whenever it is shown. */
    static void focusWhenShown(Evas_Object* widget);

    /** Clears the content area for a start page. */
    void clearForStartPage() const;
    /** Clears the content area for a test page. */
    void clearForTestPage() const;

    /** A button of the content area; its "pressed" callback gets the view. */
    Evas_Object* addButton(const char* text, Evas_Smart_Cb pressed);

    /**
     * Brings the radio host stack up behind the start button, which tells how it goes; blocks until then.
     * When the service's "ready" is to be waited for, the test's picker popups go, to be made afresh.
     *
     * @throw std::runtime_error as `prepare_background_app` does.
     */
    static void startTest(const LogOrigin& origin, Evas_Object* startButton,
                          std::initializer_list<WidgetHandle*> pickerPopups);

    /**
     * Makes a picker's popup and spinner, whose key presses `keyCallback` gets with the view.
     *
     * @return false when a widget could not be made (logged for `origin`).
     */
    bool createPicker(const LogOrigin& origin, const Picker& picker, WidgetHandle& popup,
                      WidgetHandle& spinner, Evas_Object_Event_Cb keyCallback);

    /** Shows a popup and remembers it as the one showing. */
    void showPopup(Evas_Object* popup);

    /** The number in a picker's spinner when the key chooses it, Return; other keys are the spinner's own. */
    static std::optional<int> chosenNumber(const Evas_Event_Key_Down& key, const Evas_Object* spinner);

    /** Gives the number to the radio; when it takes it, the button shows it and the picker closes. */
    void sendNumber(const LogOrigin& origin, const Picker& picker, int number, Evas_Object* button);

    /** Has the radio end the test; false (logged for `origin`) when it did not. */
    static bool stopTest(const LogOrigin& origin);

private:
    /** True when the service's "ready" is to be waited for. */
    static bool bringUpRadio(const LogOrigin& origin, Evas_Object* startButton);
};
