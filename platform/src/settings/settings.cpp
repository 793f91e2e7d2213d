#include "platform/settings.h"

#include "files/descriptor.h"
#include "platform/log.h"
#include "settings_file.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <glib.h>
#include <memory>
#include <sys/stat.h>

namespace platform::settings {
namespace {

constexpr int largest_side = 16384;

void complain(const std::string& what) {
    __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "settings: %s", what.c_str());
}

std::string text_of(char* owned) {
    const std::unique_ptr<char, decltype(&g_free)> text(owned, g_free);
    return text.get();
}

bool is_missing(const GError& error) {
    return g_error_matches(&error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_KEY_NOT_FOUND) != 0 ||
           g_error_matches(&error, G_KEY_FILE_ERROR, G_KEY_FILE_ERROR_GROUP_NOT_FOUND) != 0;
}

/** Opens the file, as long as it is one: GLib waits at a named pipe. Only a missing one needs no word. */
Descriptor open_without_waiting(const std::string& path) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file && errno != ENOENT)
        complain(path + ": " + g_strerror(errno));
    if (!file || fstat(file.get(), &status) != 0 || S_ISREG(status.st_mode))
        return file;
    complain(path + ": not a file");
    return {};
}

std::optional<int> side(std::string_view digits) {
    int pixels = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, pixels);
    if (error != std::errc() || rest != end || pixels < 1 || pixels > largest_side)
        return std::nullopt;
    return pixels;
}

} // namespace

std::string file_path() {
    const char* const folder = g_getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && g_path_is_absolute(folder) != 0)
        return text_of(g_build_filename(folder, "tv-platform", "settings.ini", nullptr));
    return text_of(g_build_filename(g_get_home_dir(), ".config", "tv-platform", "settings.ini", nullptr));
}

std::optional<std::string> text(std::string_view key) {
    const std::size_t slash = key.rfind('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    const std::string section(key.substr(0, slash));
    const std::string name(key.substr(slash + 1));
    const std::string path = file_path();
    const Descriptor opened = open_without_waiting(path);
    if (!opened)
        return std::nullopt;
    g_autoptr(GKeyFile) file = g_key_file_new();
    g_autoptr(GError) error = nullptr;
    if (g_key_file_load_from_file(file, ("/proc/self/fd/" + std::to_string(opened.get())).c_str(),
                                  G_KEY_FILE_NONE, &error) != 0) {
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
    const std::string_view whole = *value;
    const std::size_t cross = whole.find('x');
    if (cross != std::string_view::npos) {
        const std::optional<int> width = side(whole.substr(0, cross));
        const std::optional<int> height = side(whole.substr(cross + 1));
        if (width && height)
            return Size{*width, *height};
    }
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
