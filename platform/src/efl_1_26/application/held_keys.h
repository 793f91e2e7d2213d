/** Repetitions of keys that are held down. */
#pragma once

namespace platform {

/**
 * From now on a held key is one press: its repetitions reach nobody, except those of the arrows.
 *
 * A repetition is a key-down without a key-up before it; Ecore X asks the server to send no key-up between
 * them. A key-up may never come, for it goes to the window that has the keyboard then. So the held keys are forgotten
 * with the focus, and when it comes back those that are down are held: a key that was pressed in another
 * window does nothing here until it is pressed again.
 */
void drop_repeated_keys();

} // namespace platform
