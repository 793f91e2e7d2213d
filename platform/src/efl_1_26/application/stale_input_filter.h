/** Drops input that was meant for an older picture. */
#pragma once

namespace platform {

/**
 * From now on drops stale input: a key, mouse button or wheel that was pressed before the end of a freeze, a
 * stretch of more than a quarter of a second in which the main loop did not turn. The operator meant what the
 * screen showed during the freeze, not what it shows afterwards.
 *
 * The red key is delivered: it does not act on the page, but raises the window. Releases are delivered too.
 *
 * The time between the main loop's going to wait and its waking does not count, and that from this call to the first
 * wait does.
 */
void drop_stale_input();

} // namespace platform
