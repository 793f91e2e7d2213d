/** Input that was meant for an older picture. */
#pragma once

namespace platform {

/**
 * From now on drops stale input: a key, mouse button or wheel that was pressed before the end of a freeze, more than
 * 250 ms in which the main loop was blocked. The operator meant what the
 * screen showed during the freeze, not what it shows afterwards.
 *
 * The red key is delivered: it does not act on the page, but raises the window. Releases are delivered too.
 *
 * Waiting in the main loop does not count as blocked; the time from this call to the first wait does.
 */
void drop_stale_input();

} // namespace platform
