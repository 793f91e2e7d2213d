#include "held_keys.h"

#include "application/x_server.h"

#include <Ecore_Input.h>
#include <Ecore_X.h>
#include <algorithm>
#include <string_view>

namespace platform {
namespace {

constexpr std::array<std::string_view, 8> repeating_keys{"Left",    "Right",    "Up",    "Down",
                                                         "KP_Left", "KP_Right", "KP_Up", "KP_Down"};

bool repeats(const Ecore_Event_Key& key) {
    return key.key && std::ranges::find(repeating_keys, key.key) != repeating_keys.end();
}

/** Whether the focus went or came because a key was grabbed, which keeps the keyboard for a moment only. */
bool is_of_grab(const Ecore_X_Event_Window_Focus_In& focus) { // going and coming have the same fields
    return focus.mode == ECORE_X_EVENT_MODE_GRAB || focus.mode == ECORE_X_EVENT_MODE_UNGRAB;
}

} // namespace

// First among the handlers, and no filter: filters are called for the whole queue before the first handler.
HeldKeys::HeldKeys() {
    handlers_[0].reset(ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, pressed, this));
    handlers_[1].reset(ecore_event_handler_prepend(ECORE_EVENT_KEY_UP, released, this));
    if (ECORE_X_EVENT_WINDOW_FOCUS_IN == 0)
        return; // no display
    handlers_[2].reset(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_FOCUS_IN, focus_came, this));
    handlers_[3].reset(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_FOCUS_OUT, focus_went, this));
}

Eina_Bool HeldKeys::pressed(void* self, int /*type*/, void* event) {
    const auto& key = *static_cast<const Ecore_Event_Key*>(event);
    auto& held = static_cast<HeldKeys*>(self)->held_;
    if (key.keycode >= held.size() || repeats(key))
        return ECORE_CALLBACK_PASS_ON;
    const bool repeated = held[key.keycode];
    held.set(key.keycode);
    return repeated ? ECORE_CALLBACK_DONE : ECORE_CALLBACK_PASS_ON;
}

Eina_Bool HeldKeys::released(void* self, int /*type*/, void* event) {
    const auto code = static_cast<const Ecore_Event_Key*>(event)->keycode;
    auto& held = static_cast<HeldKeys*>(self)->held_;
    if (code < held.size())
        held.reset(code);
    return ECORE_CALLBACK_PASS_ON;
}

// After a grab the key that was grabbed may be down and its key-down come yet.
Eina_Bool HeldKeys::focus_came(void* self, int /*type*/, void* event) {
    auto& held = static_cast<HeldKeys*>(self)->held_;
    const auto down = x_keys_down();
    held = is_of_grab(*static_cast<const Ecore_X_Event_Window_Focus_In*>(event)) ? held & down : down;
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool HeldKeys::focus_went(void* self, int /*type*/, void* event) {
    if (!is_of_grab(*static_cast<const Ecore_X_Event_Window_Focus_In*>(event)))
        static_cast<HeldKeys*>(self)->held_.reset();
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace platform
