/** Watches the settings for a new language or text direction. */
#pragma once

namespace platform {

/**
 * Calls the application's handler from GLib's default context whenever the language or the mirroring in the settings
 * file has changed. The file need not exist.
 */
void watch_language();

} // namespace platform
