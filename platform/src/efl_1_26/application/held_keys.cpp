#include "held_keys.h"

#include <Ecore.h>
#include <Ecore_Input.h>
#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <algorithm>
#include <array>
#include <bitset>
#include <string_view>

namespace platform {
namespace {

constexpr std::array<std::string_view, 8> repeating_keys{"Left",    "Right",    "Up",    "Down",
                                                         "KP_Left", "KP_Right", "KP_Up", "KP_Down"};

std::bitset<256> held; // by key code

/** Asks the X server which keys are down. */
std::bitset<256> keys_down() {
    std::array<char, 32> bytes{};
    XQueryKeymap(static_cast<Display*>(ecore_x_display_get()), bytes.data());
    std::bitset<256> down;
    for (std::size_t code = 0; code < down.size(); ++code)
        down[code] = (static_cast<unsigned char>(bytes[code / 8]) >> (code % 8) & 1U) != 0;
    return down;
}

/** Whether a focus change was caused by a key grab, which takes the keyboard only for a moment. */
bool is_of_grab(const void* event) {
    const auto& focus =
        *static_cast<const Ecore_X_Event_Window_Focus_In*>(event); // focus-out has the same fields
    return focus.mode == ECORE_X_EVENT_MODE_GRAB || focus.mode == ECORE_X_EVENT_MODE_UNGRAB;
}

Eina_Bool pressed(void* /*data*/, int /*type*/, void* event) {
    const auto& key = *static_cast<const Ecore_Event_Key*>(event);
    if (key.keycode >= held.size() || (key.key && std::ranges::count(repeating_keys, key.key) != 0))
        return ECORE_CALLBACK_PASS_ON;
    const bool is_repeated = held[key.keycode];
    held.set(key.keycode);
    return is_repeated ? ECORE_CALLBACK_DONE : ECORE_CALLBACK_PASS_ON;
}

Eina_Bool released(void* /*data*/, int /*type*/, void* event) {
    const auto code = static_cast<const Ecore_Event_Key*>(event)->keycode;
    if (code < held.size())
        held.reset(code);
    return ECORE_CALLBACK_PASS_ON;
}

// After a grab, the grabbed key may be down although its key-down is yet to come: that key does not count as held.
Eina_Bool focus_came(void* /*data*/, int /*type*/, void* event) {
    held = is_of_grab(event) ? held & keys_down() : keys_down();
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool focus_went(void* /*data*/, int /*type*/, void* event) {
    if (!is_of_grab(event))
        held.reset();
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

// Prepends handlers instead of adding filters, because Ecore calls filters for the whole queue before any handler.
void drop_repeated_keys() {
    ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, pressed, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_KEY_UP, released, nullptr);
    ecore_event_handler_add(ECORE_X_EVENT_WINDOW_FOCUS_IN, focus_came, nullptr);
    ecore_event_handler_add(ECORE_X_EVENT_WINDOW_FOCUS_OUT, focus_went, nullptr);
}

} // namespace platform
