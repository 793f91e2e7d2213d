#include "still_picture.h"

#include "application/x_server.h"
#include "common/dropped_press.h"
#include "platform/log.h"

#include <Ecore_Input.h>
#include <string>

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr auto longest_turn = 250ms;
/** What was pressed in a stretch has been read soon after it; an older end would tell nothing, for X's times
 * come round. */
constexpr auto longest_memory = 1min;

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

} // namespace

/** A source of GLib's that is never ready: GLib calls its functions before and after each wait. */
struct StillPicture::Watch {
    GSource source;
    StillPicture* picture;
};

void StillPicture::Removal::operator()(GSource* watch) const {
    g_source_destroy(watch);
    g_source_unref(watch);
}

// Ecore calls its event filters for the whole queue before the first handler, so that a filter has passed the
// presses that were read together with the one whose handler then takes long (measured with EFL 1.26.3). The
// first of the handlers sees each press when its turn has come.
StillPicture::StillPicture() {
    static GSourceFuncs functions{.prepare = about_to_wait,
                                  .check = woken,
                                  .dispatch = nullptr,
                                  .finalize = nullptr,
                                  .closure_callback = nullptr,
                                  .closure_marshal = nullptr};
    watch_.reset(g_source_new(&functions, sizeof(Watch)));
    reinterpret_cast<Watch*>(watch_.get())->picture = this;
    g_source_set_priority(watch_.get(), G_MININT); // GLib asks no source behind one that is ready
    g_source_attach(watch_.get(), nullptr);
    handlers_[0].reset(ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, judge, this));
    handlers_[1].reset(ecore_event_handler_prepend(ECORE_EVENT_MOUSE_BUTTON_DOWN, judge, this));
    handlers_[2].reset(ecore_event_handler_prepend(ECORE_EVENT_MOUSE_WHEEL, judge, this));
}

gboolean StillPicture::about_to_wait(GSource* watch, int* timeout) {
    auto& picture = *reinterpret_cast<Watch*>(watch)->picture;
    *timeout = -1;
    if (Clock::now() - picture.woken_ > longest_turn) {
        picture.end_ = {.server_time = x_server_time(), .time = Clock::now()};
        picture.dropped_last_.clear();
    }
    return FALSE;
}

gboolean StillPicture::woken(GSource* watch) {
    reinterpret_cast<Watch*>(watch)->picture->woken_ = Clock::now();
    return FALSE;
}

bool StillPicture::stood_still_at(unsigned server_time) const {
    const auto now = Clock::now();
    if (now - woken_ > longest_turn)
        return true; // this turn is such a stretch, and what it handles was read before its end
    constexpr unsigned unknown = 0; // of an event that another program made
    return server_time != unknown && end_.server_time && now - end_.time < longest_memory &&
           static_cast<int>(server_time - *end_.server_time) <= 0;
}

Eina_Bool StillPicture::judge(void* self, int type, void* event) {
    auto* const picture = static_cast<StillPicture*>(self);
    const auto press = press_of(type, event);
    if (!picture->stood_still_at(press.server_time))
        return ECORE_CALLBACK_PASS_ON;
    if (picture->dropped_last_.empty())
        ecore_event_add(dropped_press_event(), nullptr, nullptr, nullptr);
    if (press.name != picture->dropped_last_)
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM",
                     "dropped a press while the screen stood still: %s", press.name.c_str());
    picture->dropped_last_ = press.name;
    return ECORE_CALLBACK_DONE;
}

} // namespace platform
