/** Drops key repeats. */
#pragma once

namespace platform {

/**
 * Drops the repeats of all held keys except the arrows.
 *
 * A repeat is another key-down without a key-up in between; Ecore X asks the server to send no key-up between repeats.
 * The final key-up goes to the window that then has the keyboard. So held keys are forgotten when the window loses the
 * focus, and keys that are down when it regains the focus count as held: a key pressed in another window has no effect
 * here until it is pressed again.
 */
void drop_repeated_keys();

} // namespace platform
