/** The settings file and the typed settings in it, for the framework and the widget toolkit. */
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::settings {

/** A size in pixels. */
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

/**
 * The settings file, `$XDG_CONFIG_HOME/tv-platform/settings.ini`, whether it exists or not. An
 * XDG_CONFIG_HOME that is unset, empty or relative means `~/.config`.
 */
std::string file_path();

/**
 * Reads a setting from the file as it is now.
 *
 * @param key section and key, separated by the last slash, for example "db/menu_widget/language".
 * @return the value, nothing when it is missing or the file cannot be read as a key file (logged).
 */
std::optional<std::string> text(std::string_view key);

/** Reads a setting that is `true` or `false`; another value is logged and counts as missing. */
std::optional<bool> boolean(std::string_view key);

/** Reads a size such as `1280x720`, each side from 1 to 16384; another value is logged and counts as missing. */
std::optional<Size> size(std::string_view key);

} // namespace platform::settings
