#include "accessibility_bridge.h"

#include <Elementary.h>
#include <dlfcn.h>
#include <string_view>

// Only libelementary has the bridge object: no header declares the function that returns it.
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
 * Measured with EFL 1.26.3: with the AT-SPI bridge on, no key press reaches a handler. The bridge adds an
 * event filter that takes every key event out of the loop, asks the accessibility registry about it, and puts
 * it back neither when the registry answers "not consumed" nor when it does not answer. EFL has no switch for it.
 *
 * The executable's own definition of ecore_event_filter_add comes before libecore's in the dynamic linker's
 * search order, so libelementary's call ends here. The bridge's filter is recognised by its origin and its
 * shape, a filter function inside libelementary without start and end functions; that one is refused, which
 * the bridge takes for "not added" and leaves alone. Everything else is passed on to libecore.
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
 * Measured with EFL 1.26.3: the bridge waits 100 ms for the accessibility service's answer with the bus's address, and does
 * not ask again; on a busy machine it stays on without a connection, and no event reports that. Its object is not cleared
 * when it is switched off.
 */
bool bridge_is_connected() {
    return elm_config_atspi_mode_get() && elm_atspi_bridge_connected_get(_elm_atspi_bridge_get());
}

} // namespace platform
