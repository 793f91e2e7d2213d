#include "support/pages.h"

#include "MainPageView.h"
#include "TestTab.h"
#include "model/ncp_requester.h"
#include "model/util.h"

#include <algorithm>
#include <platform/vell.h>

namespace test {

Pages::Pages() {
    start_elementary();
    for (const char* const method : {"ember_start", "ember_stop", "ember_set_channel", "ember_set_power",
                                     "ember_start_stream", "ember_stop_stream", "ember_reset_rx_statistics"})
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

Pages::~Pages() {
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
}

void Pages::activate(const std::string& text) {
    Evas_Object* const button = screen->find(text);
    ASSERT_NE(button, nullptr) << text;
    elm_object_focus_set(button, EINA_TRUE);
    ASSERT_EQ(screen->focused(), text);
    screen->press("Return");
}

void Pages::emit(const std::string& event) {
    radio.emit("ncp_event", "('" + event + "',)");
    settle();
}

void Pages::open(const std::string& tab) {
    activate(tab);
    emit("ready");
}

std::vector<std::string> Pages::content() const {
    const auto seen = screen->seen();
    const auto last_tab = std::find(seen.begin(), seen.end(), "RX Test");
    return last_tab == seen.end() ? seen : std::vector<std::string>(last_tab + 1, seen.end());
}

} // namespace test
