#include "language.h"

#include "guarded_call.h"
#include "platform/application.h"
#include "settings/settings_file.h"

#include <gio/gio.h>
#include <utility>

namespace platform {

class EventInformation {};

class EventHandler {
public:
    EventCallback callback = nullptr;
    void* user_data = nullptr;
};

namespace {

/** The file is read once it has been unchanged for this long: an editor may change it several times while saving. */
constexpr unsigned quiet_milliseconds = 100;

EventHandler language_changed; // registered before the framework runs

/** The values of the settings "language" and "mirrored". */
using Values = std::pair<std::optional<std::string>, std::optional<std::string>>;
Values values;

Values read_values() {
    return {settings::text("db/menu_widget/language"), settings::text("db/menu_widget/mirrored")};
}

unsigned comparison = 0; // ID of the time-out that will call `compare`; 0: none

gboolean compare(gpointer /*data*/) {
    comparison = 0;
    EventInformation information;
    if (auto now = read_values(); now != std::exchange(values, now))
        guarded_call("event handler", language_changed.callback, &information, language_changed.user_data);
    return G_SOURCE_REMOVE;
}

void file_changed() {
    if (comparison != 0)
        g_source_remove(comparison);
    comparison = g_timeout_add(quiet_milliseconds, compare, nullptr);
}

} // namespace

void watch_language() {
    const std::string path = settings::file_path();
    // GIO polls for a missing folder every four seconds, which wakes the idle application; in an existing folder, the
    // kernel reports changes.
    g_autofree char* folder = g_path_get_dirname(path.c_str());
    g_mkdir_with_parents(folder, 0700);
    g_autoptr(GFile) file = g_file_new_for_path(path.c_str());
    g_autoptr(GError) error = nullptr;
    static GFileMonitor* const monitor = g_file_monitor_file(file, G_FILE_MONITOR_NONE, nullptr, &error);
    if (monitor)
        g_signal_connect(monitor, "changed", G_CALLBACK(file_changed), nullptr);
    else
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "language changes go unnoticed: %s",
                     error->message);
    values = read_values();
}

} // namespace platform

int ui_app_add_event_handler(platform::EventHandler** handler, platform::EventType type,
                             platform::EventCallback callback, void* user_data) {
    if (type != platform::EventType::language_changed || !callback)
        return platform::application_invalid_argument;
    platform::language_changed = {callback, user_data};
    if (handler)
        *handler = &platform::language_changed;
    return platform::application_ok;
}
