#include "main_loop.h"

#include "platform/application.h"
#include "platform/log.h"

#include <Elementary.h>
#include <utility>

namespace platform {

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

} // namespace platform

void ui_app_quit_reason_set(const char* reason) { platform::MainLoop::instance().note_reason(reason); }

void ui_app_quit(const char* reason) {
    auto& loop = platform::MainLoop::instance();
    loop.note_reason(reason);
    loop.quit();
}
