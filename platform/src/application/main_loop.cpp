#include "main_loop.h"

#include "platform/application.h"
#include "platform/log.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <string>

namespace platform {
namespace {

constexpr const char* application_reason = "the application asked to";

std::string first_reason;
bool is_running = false;

// Velmora never refuses to close.
Eina_Bool close_request(void* /*data*/, int /*type*/, void* /*event*/) {
    quit_main_loop("the window was closed");
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

void run_main_loop() {
    ecore_event_handler_prepend(ECORE_X_EVENT_WINDOW_DELETE_REQUEST, close_request, nullptr);
    is_running = true;
    if (first_reason.empty())
        elm_run();
    is_running = false;
    __dlog_print(LogBuffer::main, LogPriority::info, "PLATFORM", "the main loop ends: %s",
                 first_reason.empty() ? application_reason : first_reason.c_str());
}

void quit_main_loop(const char* reason) {
    if (first_reason.empty())
        first_reason = reason;
    if (is_running)
        elm_exit();
}

} // namespace platform

void ui_app_quit() { platform::quit_main_loop(platform::application_reason); }
