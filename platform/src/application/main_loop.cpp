#include "main_loop.h"

#include "platform/application.h"
#include "platform/log.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <csignal>
#include <utility>

namespace platform {
namespace {

constexpr const char* application_reason = "the application asked to";

const char* signal_name(const Ecore_Event_Signal_Exit& event) {
    if (event.interrupt)
        return "SIGINT";
    return event.quit ? "SIGQUIT" : "SIGTERM";
}

Eina_Bool exit_signal(void* /*data*/, int /*type*/, void* event) {
    const auto& signal = *static_cast<const Ecore_Event_Signal_Exit*>(event);
    if (signal.data.si_signo == 0) {
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM",
                     "the session bus connection was closed");
        return ECORE_CALLBACK_DONE;
    }
    MainLoop::instance().quit(signal_name(signal));
    return ECORE_CALLBACK_DONE;
}

// The application may refuse to close, but ours never does.
Eina_Bool close_request(void* /*data*/, int /*type*/, void* /*event*/) {
    MainLoop::instance().note_reason("the window was closed");
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool hangup_signal(void* /*data*/, int /*type*/, void* /*event*/) {
    MainLoop::instance().quit("SIGHUP");
    return ECORE_CALLBACK_DONE;
}

} // namespace

MainLoop& MainLoop::instance() {
    static MainLoop loop;
    return loop;
}

void MainLoop::run() {
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

// Before Elementary's own handler, which ends the loop without a word.
EndingEvents::EndingEvents()
    : exit_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_EXIT, exit_signal, nullptr)),
      hangup_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_HUP, hangup_signal, nullptr)),
      close_(ecore_event_handler_prepend(ECORE_X_EVENT_WINDOW_DELETE_REQUEST, close_request, nullptr)) {}

} // namespace platform

void ui_app_quit() { platform::MainLoop::instance().quit(platform::application_reason); }
