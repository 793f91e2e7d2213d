/** Keys that are held down. */
#pragma once

#include "application/ecore_handlers.h"

#include <array>
#include <bitset>

namespace platform {

/**
 * While it lives, a held key is one press: its repetitions reach nobody, except those of the arrows.
 *
 * A repetition is a key-down without a key-up before it; Ecore X asks the server to send no key-up between
 * them. A key-up may never come, for it goes to whoever has the keyboard then. So the held keys are forgotten
 * with the focus, and when it comes back those that are down are held: a key that was pressed in another
 * window does nothing here until it is pressed anew.
 */
class HeldKeys {
public:
    HeldKeys();

private:
    static Eina_Bool pressed(void* self, int type, void* event);
    static Eina_Bool released(void* self, int type, void* event);
    static Eina_Bool focus_came(void* self, int type, void* event);
    static Eina_Bool focus_went(void* self, int type, void* event);

    std::bitset<256> held_; // by key code
    std::array<OwnedEventHandler, 4> handlers_;
};

} // namespace platform
