#include "ending_signals.h"

#include "main_loop.h"
#include "platform/log.h"

#include <Ecore.h>
#include <algorithm>
#include <array>
#include <csignal>

namespace platform {
namespace {

struct EndingSignal {
    int number;
    struct sigaction of_ecore = {};
};
std::array<EndingSignal, 4> ending_signals{{{SIGTERM}, {SIGINT}, {SIGQUIT}, {SIGHUP}}};

bool is_ignored(int number) {
    struct sigaction present = {};
    sigaction(number, nullptr, &present);
    return present.sa_handler == SIG_IGN;
}

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

Eina_Bool hangup_signal(void* /*data*/, int /*type*/, void* /*event*/) {
    MainLoop::instance().quit("SIGHUP");
    return ECORE_CALLBACK_DONE;
}

} // namespace

// A signal that comes meanwhile is held back, or Ecore's handler would keep it for the loop.
bool init_ecore_without_signals() {
    sigset_t ending = {};
    sigset_t blocked = {};
    std::array<struct sigaction, ending_signals.size()> inherited = {};
    for (std::size_t i = 0; i < inherited.size(); ++i) {
        sigaddset(&ending, ending_signals[i].number);
        sigaction(ending_signals[i].number, nullptr, &inherited[i]);
    }
    pthread_sigmask(SIG_BLOCK, &ending, &blocked);
    const bool is_up = ecore_init() > 0;
    for (std::size_t i = 0; i < inherited.size(); ++i)
        sigaction(ending_signals[i].number, &inherited[i], &ending_signals[i].of_ecore);
    pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
    return is_up;
}

// The handlers come before Elementary's own, which end the loop without a word.
EndingSignals::EndingSignals()
    : exit_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_EXIT, exit_signal, nullptr)),
      hangup_(ecore_event_handler_prepend(ECORE_EVENT_SIGNAL_HUP, hangup_signal, nullptr)) {
    for (const auto& [number, of_ecore] : ending_signals)
        if (!is_ignored(number))
            sigaction(number, &of_ecore, nullptr);
}

} // namespace platform
