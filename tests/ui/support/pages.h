/** The application's pages in this process, with a radio service whose answers the test sets. */
#pragma once

#include "support/screen.h"
#include "support/scripted_service.h"

#include "MainPageView.h"
#include "TestTab.h"
#include "model/ncp_requester.h"
#include "model/util.h"

namespace test {

/** Builds and destroys the pages as the application does. */
class Pages : public WindowTest {
protected:
    Pages() {
        for (const char* const method :
             {"ember_start", "ember_stop", "ember_set_channel", "ember_set_power", "ember_start_stream",
              "ember_stop_stream", "ember_reset_rx_statistics"})
            radio.answer(method, "(0,)");
        MainPageView& page = MainPageView::getInstance();
        ncp_requester::getInstance().register_callback(MainPageView::requesterCb, &page);
        ncp_requester::getInstance().start();
        page.createWindow();
        keys_ = ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, MainPageView::keyDownCb, &page);
        page.createBackground();
        page.createMainPage();
        page.createSubPageLayout();
        page.renderFirst();
        window = elm_object_top_widget_get(testTabs().front().view().parentLayout);
        EXPECT_TRUE(await([this] { return elm_win_focus_get(window) != EINA_FALSE; }));
    }
    ~Pages() override {
        MainPageView::getInstance().destroyWidgets();
        elm_vell_manager_fini();
        for (const TestTab& tab : testTabs()) {
            tab.view().Destroy();
            tab.destroyView();
        }
        ncp_requester::getInstance().unregister_callback(MainPageView::requesterCb);
        ncp_requester::getInstance().stop();
        kill_background_app();
        ecore_event_handler_del(keys_);
        MainPageView::destroyInstance();
    }

    /** Presses a button with Return. */
    void activate(const std::string& text) const {
        Evas_Object* const button = find(text);
        ASSERT_NE(button, nullptr) << text;
        elm_object_focus_set(button, EINA_TRUE);
        ASSERT_EQ(focused(), text);
        press("Return");
    }
    /** Makes the radio service send "ready", as after a start. */
    void emit_ready() {
        radio.emit("('ready',)");
        settle();
    }

    ScriptedService radio;

private:
    Ecore_Event_Handler* keys_ = nullptr;
};

} // namespace test
