/** The application's window and main page: header, tabs, content area, keys and exit popup. */
#pragma once

#include "CSingleton.h"
#include "WidgetHandle.h"

#include <Elementary.h>
#include <string>

/** No tab has been pressed yet, so an early "ready" starts nothing. */
inline constexpr int noTest = -1;

class MainPageView : public CSingleton<MainPageView> {
public:
    ~MainPageView() override = default;

    // The steps of the create callback, in order. If a widget cannot be created, the step logs "Input data is
    // Null!" and returns, and the later steps run without the widget.
    void createWindow();
    void createBackground();
    void createMainPage();
    void createSubPageLayout();
    void renderFirst();

    /** Stops grabbing the red key, and deletes the page's widgets. */
    void destroyWidgets();

    /** Sets the layout direction to that of the platform. */
    static void setMirroring();

    /** Key handler: Back and Exit close a popup or lower the window; the red key raises the window. */
    static Eina_Bool keyDownCb(void* data, int type, void* event);

    /** Listener for NCP host events: on "ready", starts the radio and shows the selected test's page. */
    static void requesterCb(const std::string& eventText, void* data);

private:
    friend class CSingleton<MainPageView>;
    MainPageView() = default;

    void createMainPageLayout();
    void createMainPageHeader();
    void createMainPageSubHeader();
    void createExitPopup();
    void handOverContentArea();
    void showExitPopup();
    void closePopupOrLower();

    static void winDeleteRequestCb(void* data, Evas_Object* window, void* event);
    static void exitAppBtnPressedCb(void* data, Evas_Object* button, void* event);
    static void exitPopupYesPressedCb(void* data, Evas_Object* button, void* event);
    static void exitPopupCancelPressedCb(void* data, Evas_Object* button, void* event);
    static void subHeaderButtonPressedCb(void* data, Evas_Object* button, void* event);
    static void setFocusAfterShowCb(void* data, Evas* canvas, Evas_Object* widget, void* event);

    WidgetHandle window;
    WidgetHandle background;
    WidgetHandle rootLayout;
    WidgetHandle mainPageLayout;
    WidgetHandle subPageLayout;
    WidgetHandle header;
    WidgetHandle shownPopup;
    WidgetHandle exitPopup;
    int selectedTest = noTest; /**< index in `testTabs` of the tab pressed last */
};
