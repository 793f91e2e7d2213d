#include "main_loop.h"

#include "ecore_handlers.h"
#include "platform/application.h"
#include "platform/log.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <utility>

namespace platform {
namespace {

constexpr const char* application_reason = "the application asked to";

// An application may refuse to close, but ours never does.
Eina_Bool close_request(void* /*data*/, int /*type*/, void* /*event*/) {
    MainLoop::instance().note_reason("the window was closed");
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

MainLoop& MainLoop::instance() {
    static MainLoop loop;
    return loop;
}

void MainLoop::run() {
    const OwnedEventHandler closing(
        ecore_event_handler_prepend(ECORE_X_EVENT_WINDOW_DELETE_REQUEST, close_request, nullptr));
    running_ = true;
    if (!std::exchange(quit_requested_, false))
        elm_run();
    running_ = false;
    __dlog_print(LogBuffer::main, LogPriority::info, "PLATFORM", "the main loop ends: %s",
                 reason_.empty() ? application_reason : reason_.c_str());
}

void MainLoop::note_reason(const char* reason) {
    if (reason_.empty())
        reason_ = reason;
}

void MainLoop::quit(const char* reason) {
    note_reason(reason);
    if (running_)
        elm_exit();
    else
        quit_requested_ = true;
}

void MainLoop::reset() {
    reason_.clear();
    quit_requested_ = false;
}

} // namespace platform

void ui_app_quit() { platform::MainLoop::instance().quit(platform::application_reason); }
