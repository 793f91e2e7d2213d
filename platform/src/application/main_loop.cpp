#include "main_loop.h"

#include "platform/application.h"
#include "platform/log.h"

#include <Elementary.h>
#include <csignal>
#include <utility>

namespace platform {
namespace {

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
    ui_app_quit(signal_name(signal));
    return ECORE_CALLBACK_DONE;
}

Eina_Bool hangup_signal(void* /*data*/, int /*type*/, void* /*event*/) {
    ui_app_quit("SIGHUP");
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
                 reason_.empty() ? "the toolkit was asked to" : reason_.c_str());
}

void MainLoop::note_reason(const char* reason) {
    if (reason_.empty() && reason)
        reason_ = reason;
}

void MainLoop::quit() {
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
EndingSignals::EndingSignals()
    : exit_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_EXIT, exit_signal, nullptr)),
      hangup_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_HUP, hangup_signal, nullptr)) {}

} // namespace platform

void ui_app_quit_reason_set(const char* reason) { platform::MainLoop::instance().note_reason(reason); }

void ui_app_quit(const char* reason) {
    auto& loop = platform::MainLoop::instance();
    loop.note_reason(reason);
    loop.quit();
}
