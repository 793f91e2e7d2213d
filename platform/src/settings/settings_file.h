/** Typed access to the settings file for the framework and the widget toolkit. */
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
 * Returns the path `$XDG_CONFIG_HOME/tv-platform/settings.ini`, even if there is no such file. If XDG_CONFIG_HOME is
 * unset, empty or relative, uses `~/.config`.
 */
std::string file_path();

/**
 * Reads a setting from the current file.
 *
 * @param key section and key, separated by the last slash, for example "db/menu_widget/language".
 * @return the value; nothing if it is missing, or the file is not a readable key file (logged).
 */
std::optional<std::string> text(std::string_view key);

/** Reads a setting with the value `true` or `false`; logs and ignores other values. */
std::optional<bool> boolean(std::string_view key);

/** Reads a size such as `1280x720`, each side from 1 to 16384; logs and ignores other values. */
std::optional<Size> size(std::string_view key);

} // namespace platform::settings
