#include "platform/settings.h"

#include "common/regular_file.h"
#include "platform/log.h"
#include "settings_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <glib.h>

namespace platform::settings {
namespace {

constexpr int largest_side = 16384;

void complain(const std::string& what) {
    __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "settings: %s", what.c_str());
}

bool is_missing(const GError& error) {
    return g_error_matches(&error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_KEY_NOT_FOUND) != 0 ||
           g_error_matches(&error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_GROUP_NOT_FOUND) != 0;
}

/** Reads the file; logs failures, except a missing file. */
std::optional<std::string> content_of(const std::string& path) {
    std::optional<std::string> content = read_regular_file(AT_FDCWD, path.c_str());
    if (!content && errno != ENOENT)
        complain(path + ": " + g_strerror(errno));
    return content;
}

/** Parses a number from 1 to the largest side; returns nothing if that fails. */
std::optional<int> side(const std::string& digits) {
    guint64 pixels = 0;
    if (!g_ascii_string_to_unsigned(digits.c_str(), 10, 1, largest_side, &pixels, nullptr))
        return std::nullopt;
    return static_cast<int>(pixels);
}

} // namespace

std::string file_path() {
    const char* const folder = g_getenv("XDG_CONFIG_HOME");
    g_autofree char* file =
        folder && g_path_is_absolute(folder)
            ? g_build_filename(folder, "tv-platform", "settings.ini", nullptr)
            : g_build_filename(g_get_home_dir(), ".config", "tv-platform", "settings.ini", nullptr);
    return file;
}

std::optional<std::string> text(std::string_view key) {
    const std::size_t slash = key.rfind('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    const std::string section(key.substr(0, slash));
    const std::string name(key.substr(slash + 1));
    const std::string path = file_path();
    const std::optional<std::string> content = content_of(path);
    if (!content)
        return std::nullopt;
    g_autoptr(GKeyFile) file = g_key_file_new();
    g_autoptr(GError) error = nullptr;
    if (g_key_file_load_from_data(file, content->data(), content->size(), G_KEY_FILE_NONE, &error) != 0) {
        g_autofree char* value = g_key_file_get_string(file, section.c_str(), name.c_str(), &error);
        if (value != nullptr && error == nullptr)
            return value;
    }
    if (error != nullptr && !is_missing(*error))
        complain(path + ": " + error->message);
    return std::nullopt;
}

std::optional<bool> boolean(std::string_view key) {
    const std::optional<std::string> value = text(key);
    if (!value)
        return std::nullopt;
    if (*value == "true" || *value == "false")
        return *value == "true";
    complain(std::string(key) + " is '" + *value + "', not true or false");
    return std::nullopt;
}

std::optional<Size> size(std::string_view key) {
    const std::optional<std::string> value = text(key);
    if (!value)
        return std::nullopt;
    const std::size_t cross = std::min(value->find('x'), value->size());
    const std::optional<int> width = side(value->substr(0, cross));
    const std::optional<int> height = side(value->substr(std::min(cross + 1, value->size())));
    if (width && height)
        return Size{*width, *height};
    complain(std::string(key) + " is '" + *value + "', not a size such as 1280x720");
    return std::nullopt;
}

} // namespace platform::settings

char* vconf_get_str(const char* key) {
    if (key == nullptr)
        return nullptr;
    const std::optional<std::string> value = platform::settings::text(key);
    return value ? strdup(value->c_str()) : nullptr;
}
