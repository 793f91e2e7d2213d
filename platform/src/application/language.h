/** Changes of the user interface's language and writing direction. */
#pragma once

namespace platform {

/**
 * From now on calls the application's handler once whenever the language or the mirroring in the settings file, which
 * need not exist, has another value than before. Called from GLib's default context.
 */
void watch_language();

} // namespace platform
