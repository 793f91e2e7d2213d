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

constexpr auto freeze_limit = 250ms;
/** A freeze that ended longer ago is ignored: its presses have been read, and X timestamps wrap around. */
constexpr auto freeze_expiry = 1min;
constexpr std::string_view raising_key = "XF86Red";

Clock::time_point woken; // when the main loop last stopped waiting
struct {
    unsigned server_time = 0;
    Clock::time_point time;
} last_freeze_end;
std::string dropped_last; // in the last freeze; keeps a held key from being logged twice

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
 * Returns the X server's time in milliseconds, the clock of the timestamps of keys and buttons.
 *
 * Property-change events carry that time. The function changes a property of a window unknown to Ecore and waits for
 * that event; all other events stay in Xlib's queue for Ecore.
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
    if (Clock::now() - woken > freeze_limit) {
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
    if (now - woken > freeze_limit)
        return true;                // this iteration is a freeze, and has not ended yet
    constexpr unsigned unknown = 0; // the timestamp of synthetic events
    return server_time != unknown && now - last_freeze_end.time < freeze_expiry &&
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

// Ecore runs event filters over the whole queue before the first handler, so a filter would pass presses that are
// queued behind one whose handler blocks (observed with EFL 1.26.3). A prepended handler sees each press just before
// the other handlers do.
void drop_stale_input() {
    woken = Clock::now();
    // A GLib source that is never ready: GLib calls its functions before and after each wait.
    static GSourceFuncs functions{};
    functions.prepare = about_to_wait;
    functions.check = has_woken;
    GSource* const watch = g_source_new(&functions, sizeof(GSource));
    g_source_set_priority(watch, G_MININT); // highest: GLib skips sources below a ready one's priority
    g_source_attach(watch, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, drop_if_stale, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_MOUSE_BUTTON_DOWN, drop_if_stale, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_MOUSE_WHEEL, drop_if_stale, nullptr);
}

} // namespace platform
