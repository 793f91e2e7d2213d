#include "accessibility_bridge.h"

#include <Elementary.h>
#include <dlfcn.h>
#include <string_view>

// libelementary exports the function that returns the bridge object, but no header declares it.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" Elm_Atspi_Bridge* _elm_atspi_bridge_get();

namespace {

bool is_in_elementary(void* address) {
    Dl_info info{};
    return dladdr(address, &info) != 0 && info.dli_fname &&
           std::string_view(info.dli_fname).find("/libelementary.so") != std::string_view::npos;
}

} // namespace

/*
 * Observed with EFL 1.26.3: with the AT-SPI bridge on, no key press reaches a handler. The bridge adds an event filter
 * that removes every key event from the loop and asks the accessibility registry about it, but never puts it back,
 * whether the registry answers "not consumed" or not at all. EFL cannot disable this.
 *
 * The executable's own ecore_event_filter_add precedes libecore's in the dynamic linker's search order, so
 * libelementary calls the function below. That function recognises the bridge's filter, which is inside libelementary
 * and has no start and end functions, and refuses it, which the bridge tolerates. All other calls go to libecore.
 */
extern "C" Ecore_Event_Filter* ecore_event_filter_add(Ecore_Data_Cb start, Ecore_Filter_Cb filter,
                                                      Ecore_End_Cb end, const void* data) {
    if (!start && !end && is_in_elementary(reinterpret_cast<void*>(filter)))
        return nullptr;
    static const auto forward =
        reinterpret_cast<decltype(&ecore_event_filter_add)>(dlsym(RTLD_NEXT, "ecore_event_filter_add"));
    return forward ? forward(start, filter, end, data) : nullptr;
}

namespace platform {

/*
 * Observed with EFL 1.26.3: the bridge waits 100 ms for the accessibility bus's address and does not retry, so on a
 * busy machine it can stay on without a connection, which no event reports. The bridge object still exists after the
 * bridge is switched off.
 */
bool bridge_is_connected() {
    return elm_config_atspi_mode_get() && elm_atspi_bridge_connected_get(_elm_atspi_bridge_get());
}

} // namespace platform
