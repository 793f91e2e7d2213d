/** The application's pages in this process, with a radio service whose answers the test sets. */
#pragma once

#include "support/log_capture.h"
#include "support/screen.h"
#include "support/scripted_service.h"

#include "MainPageView.h"
#include "TestTab.h"
#include "model/ncp_requester.h"
#include "model/util.h"

#include <gmock/gmock.h>
#include <memory>
#include <platform/vell.h>

namespace test {

/** Builds and destroys the pages as the application does. */
class Pages : public testing::Test {
protected:
    Pages() {
        start_elementary();
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
        screen = std::make_unique<Screen>(elm_object_top_widget_get(testTabs().front().view().parentLayout));
        EXPECT_TRUE(await([this] { return elm_win_focus_get(screen->window()) != EINA_FALSE; }));
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
        settle();
        EXPECT_THAT(log.library_warnings(), testing::IsEmpty());
    }

    /** Presses a button with Return. */
    void activate(const std::string& text) const {
        Evas_Object* const button = screen->find(text);
        ASSERT_NE(button, nullptr) << text;
        elm_object_focus_set(button, EINA_TRUE);
        ASSERT_EQ(screen->focused(), text);
        screen->press("Return");
    }
    /** Makes the radio service send "ready", as after a start. */
    void emit_ready() {
        radio.emit("('ready',)");
        settle();
    }

    LogCapture log; // hides the application's log from the test's output
    ScriptedService radio;
    std::unique_ptr<Screen> screen;

private:
    Ecore_Event_Handler* keys_ = nullptr;
};

} // namespace test
