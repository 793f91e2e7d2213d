#include "stale_input_filter.h"

#include "common/dropped_press.h"
#include "platform/log.h"

#include <Ecore_Input.h>
#include <Ecore_X.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <chrono>
#include <glib.h>
#include <string>
#include <string_view>

namespace platform {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto longest_iteration = 250ms;
/** Presses made in a freeze are read soon after it. Older freezes are ignored, because X's times wrap around. */
constexpr auto longest_memory = 1min;
constexpr std::string_view raising_key = "XF86Red";

Clock::time_point woken; // the main loop, from its last wait
struct {
    unsigned server_time = 0;
    Clock::time_point time;
} last_freeze_end;
std::string dropped_last; // in that freeze: a held key is logged once

struct Press {
    unsigned server_time;
    std::string name;
};

Press press_of(int type, const void* event) {
    if (type == ECORE_EVENT_KEY_DOWN) {
        const auto& key = *static_cast<const Ecore_Event_Key*>(event);
        return {key.timestamp, key.key ? key.key : "unknown key"};
    }
    if (type == ECORE_EVENT_MOUSE_WHEEL)
        return {static_cast<const Ecore_Event_Mouse_Wheel*>(event)->timestamp, "mouse wheel"};
    return {static_cast<const Ecore_Event_Mouse_Button*>(event)->timestamp, "mouse button"};
}

/**
 * Returns the server's own time in milliseconds, which keys and buttons carry too.
 *
 * A property change is reported with it. The function changes a property of a window that Ecore does not know and waits
 * for the report; all other events stay in Xlib's queue for Ecore.
 */
unsigned server_time_now() {
    auto* const display = static_cast<Display*>(ecore_x_display_get());
    const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, 0, 0);
    XSelectInput(display, window, PropertyChangeMask);
    XChangeProperty(display, window, XA_WM_NAME, XA_STRING, 8, PropModeAppend, nullptr, 0);
    XEvent change{};
    XWindowEvent(display, window, PropertyChangeMask, &change);
    XDestroyWindow(display, window);
    XFlush(display);
    return static_cast<unsigned>(change.xproperty.time);
}

gboolean about_to_wait(GSource* /*source*/, int* timeout) {
    *timeout = -1;
    if (Clock::now() - woken > longest_iteration) {
        last_freeze_end = {server_time_now(), Clock::now()};
        dropped_last.clear();
    }
    return FALSE;
}

gboolean has_woken(GSource* /*source*/) {
    woken = Clock::now();
    return FALSE;
}

bool is_stale(unsigned server_time) {
    const auto now = Clock::now();
    if (now - woken > longest_iteration)
        return true;                // this iteration is a freeze, and its events were read before it ends
    constexpr unsigned unknown = 0; // in an event that another program generated
    return server_time != unknown && now - last_freeze_end.time < longest_memory &&
           static_cast<int>(server_time - last_freeze_end.server_time) <= 0;
}

Eina_Bool drop_if_stale(void* /*data*/, int type, void* event) {
    const auto press = press_of(type, event);
    if (press.name == raising_key || !is_stale(press.server_time))
        return ECORE_CALLBACK_PASS_ON;
    if (dropped_last.empty())
        ecore_event_add(dropped_press_event(), nullptr, nullptr, nullptr);
    if (press.name != dropped_last)
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM",
                     "dropped a press while the screen was frozen: %s", press.name.c_str());
    dropped_last = press.name;
    return ECORE_CALLBACK_DONE;
}

} // namespace

// Ecore calls its event filters for the whole queue before the first handler, so a filter would have passed the presses
// that were read together with one whose handler then takes long (measured with EFL 1.26.3). The first handler sees
// each press just before the others do.
void drop_stale_input() {
    woken = Clock::now();
    // A source of GLib's that is never ready: GLib calls its functions before and after each wait.
    static GSourceFuncs functions{};
    functions.prepare = about_to_wait;
    functions.check = has_woken;
    GSource* const watch = g_source_new(&functions, sizeof(GSource));
    g_source_set_priority(watch, G_MININT); // GLib skips sources of lower priority than a ready one
    g_source_attach(watch, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, drop_if_stale, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_MOUSE_BUTTON_DOWN, drop_if_stale, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_MOUSE_WHEEL, drop_if_stale, nullptr);
}

} // namespace platform
