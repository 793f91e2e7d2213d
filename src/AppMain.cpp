// The entry point: starts and stops the parts of the application in order.
#include "GuardedCallback.h"
#include "Log.h"
#include "MainPageView.h"
#include "TestTab.h"
#include "model/ncp_requester.h"
#include "model/util.h"

#include <platform/application.h>
#include <platform/settings.h>
#include <platform/vell.h>

#include <Elementary.h>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>

namespace {

bool _app_create(void*) {
    LOG_INFO("app create called");
    MainPageView& page = MainPageView::getInstance();
    ncp_requester& requester = ncp_requester::getInstance();
    requester.register_callback(MainPageView::requesterCb, &page);
    requester.start();

    page.createWindow();
    ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, GUARDED(MainPageView::keyDownCb), &page);
    page.createBackground();
    page.createMainPage();
    page.createSubPageLayout();
    page.renderFirst();
    return true;
}

void _app_terminate(void*) {
    MainPageView::getInstance().destroyWidgets();
    elm_vell_manager_fini();
    for (const TestTab& test : testTabs()) {
        test.view().Destroy();
        test.destroyView();
    }

    ncp_requester& requester = ncp_requester::getInstance();
    requester.unregister_callback(MainPageView::requesterCb);
    requester.stop();
    kill_background_app();
    MainPageView::destroyInstance();
}

void _app_pause(void*) { LOG_ERROR("_app_pause"); }

void _app_resume(void*) { LOG_ERROR("_app_resume"); }

void _app_service(platform::LaunchRequest*, void*) { LOG_ERROR("_app_service"); }

void _app_lang_changed(platform::EventInformation*, void*) {
    const std::unique_ptr<char, decltype(&std::free)> language(vconf_get_str("db/menu_widget/language"),
                                                               &std::free);
    if (language != nullptr)
        elm_language_set(language.get());
    MainPageView::setMirroring();
}

} // namespace

int main(int argc, char** argv) {
    const platform::LifecycleCallbacks callbacks{.create = _app_create,
                                                 .terminate = _app_terminate,
                                                 .pause = _app_pause,
                                                 .resume = _app_resume,
                                                 .app_control = _app_service};
    constexpr auto language_changed = platform::EventType::language_changed;
    std::array<platform::EventHandler*, 5> eventHandlers{};
    ui_app_add_event_handler(&eventHandlers.at(static_cast<std::size_t>(language_changed)), language_changed,
                             _app_lang_changed, nullptr);

    const int result = ui_app_main(argc, argv, &callbacks, nullptr);
    if (result != 0)
        LOG_ERROR("ui_app_main() is failed. err=%d\n", result);
    return result;
}
