#include "ending_signals.h"

#include "main_loop.h"
#include "platform/log.h"

#include <Ecore.h>
#include <array>
#include <csignal>

namespace platform {
namespace {

constexpr std::array ending_signals{SIGTERM, SIGINT, SIGQUIT, SIGHUP};
using Actions = std::array<struct sigaction, ending_signals.size()>;
Actions inherited;
Actions of_ecore;

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
    quit_main_loop(signal_name(signal));
    return ECORE_CALLBACK_DONE;
}

Eina_Bool hangup_signal(void* /*data*/, int /*type*/, void* /*event*/) {
    quit_main_loop("SIGHUP");
    return ECORE_CALLBACK_DONE;
}

} // namespace

bool init_ecore_without_signals() {
    for (std::size_t i = 0; i < ending_signals.size(); ++i)
        sigaction(ending_signals[i], nullptr, &inherited[i]);
    const bool is_up = ecore_init() > 0;
    for (std::size_t i = 0; i < ending_signals.size(); ++i)
        sigaction(ending_signals[i], &inherited[i], &of_ecore[i]);
    return is_up;
}

// These handlers run before Elementary's, which end the loop without logging the reason.
void end_main_loop_on_signals() {
    ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_EXIT, exit_signal, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_HUP, hangup_signal, nullptr);
    for (std::size_t i = 0; i < ending_signals.size(); ++i)
        if (inherited[i].sa_handler != SIG_IGN)
            sigaction(ending_signals[i], &of_ecore[i], nullptr);
}

} // namespace platform
