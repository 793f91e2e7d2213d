/** The application's one window and its main page: header, tabs, content area, keys and exit popup. */
#pragma once

#include "CSingleton.h"
#include "WidgetHandle.h"

#include <Elementary.h>
#include <string>

/** No tab was pressed yet, so that an early "ready" starts nothing. */
inline constexpr int noTest = -1;

class MainPageView : public CSingleton<MainPageView> {
public:
    ~MainPageView() override = default;

    // The steps of the create callback, in the order in which it runs them. A widget that cannot be made is
    // logged ("Input data is Null!"), the rest of its step is skipped, and the later steps run without it.
    void createWindow();
    void createBackground();
    void createMainPage();
    void createSubPageLayout();
    void renderFirst();

    /** Releases the red key and deletes the page's widgets. */
    void destroyWidgets();

    /** Lays the interface out from right to left, or from left to right, as the platform asks. */
    static void setMirroring();

    /** Client-control keys: Back and Exit close a popup or lower the window, the red key raises it. */
    static Eina_Bool keyDownCb(void* data, int type, void* event);

    /** Listener of the NCP host service's events: "ready" starts the radio and the chosen test's page. */
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
    int selectedTest = noTest; /**< the place in `testTabs` of the tab that was pressed last */
};
