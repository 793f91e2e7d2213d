/** A test page in the main page's content area, and what the test pages share. */
#pragma once

#include "WidgetHandle.h"
#include "WidgetHelpers.h"

#include <initializer_list>

class ncp_requester;

/** A popup with a number, and where the view keeps its widgets. */
struct Picker {
    const char* title;
    int minimum;
    int maximum;
    Evas_Object_Event_Cb keyCallback; /**< gets every key press in the picker's spinner, and the view */
    WidgetHandle& popup;
    WidgetHandle& spinner;
};

/** What Return in a picker does with the value that it shows. */
struct PickerChoice {
    const char* name;                      /**< what is chosen, for the messages: "power" or "channel" */
    bool (ncp_requester::*operation)(int); /**< sends the value to the radio */
    bool logsValue;                        /**< whether the value is logged before it is sent */
};

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

    /** The view of a callback, whose data is its `ContentView*`; null, logged for `origin`, without one or
     * without what else it needs. */
    template <class View, class... Pointers>
    static View* viewOf(const LogOrigin& origin, void* data, const Pointers*... pointers) {
        return inputIsThere(origin, data, pointers...) ? static_cast<View*>(static_cast<ContentView*>(data))
                                                       : nullptr;
    }

    /** A button of the content area; its "pressed" callback gets the view. */
    Evas_Object* addButton(const char* text, Evas_Smart_Cb pressed);

    /** Brings the radio up for this test; its pickers are made afresh when that came to an end. Blocks. */
    static void startTest(const LogOrigin& origin, Evas_Object* startButton,
                          std::initializer_list<WidgetHandle*> pickers);

    /** Makes a picker popup; false when a widget could not be made (logged for `origin`). */
    bool createPicker(const LogOrigin& origin, const Picker& picker);

    /** Shows a popup and remembers it as the one showing. */
    void showPopup(Evas_Object* popup);

    /**
     * Handles a key press in a picker: Return sends its value to the radio, and on success the button shows
     * it and the picker closes; other keys are left to the spinner.
     */
    void handlePickerKey(const LogOrigin& origin, const Evas_Event_Key_Down& event,
                         const PickerChoice& choice, Evas_Object* spinner, Evas_Object* button);

    /** Ends the test: the start page when the radio stopped. */
    void stopTest(const LogOrigin& origin);

private:
    static bool bringUpRadio(const LogOrigin& origin, Evas_Object* startButton);
};
