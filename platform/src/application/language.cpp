#include "language.h"

#include "platform/log.h"
#include "settings/settings_file.h"

#include <utility>

namespace platform {
namespace {

/** An editor truncates, writes, renames and deletes within one save; the file is read when it has been quiet
 * this long. */
constexpr unsigned quiet_milliseconds = 100;

ObjectPointer<GFileMonitor> monitor_settings() {
    const std::string path = settings::file_path();
    // For a file in a missing folder GIO looks every four seconds whether the folder has come, which would
    // wake the idle application; with the folder there the kernel tells.
    g_autofree char* folder = g_path_get_dirname(path.c_str());
    g_mkdir_with_parents(folder, 0700);
    const ObjectPointer<GFile> file(g_file_new_for_path(path.c_str()));
    g_autoptr(GError) error = nullptr;
    ObjectPointer<GFileMonitor> monitor(
        g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, &error));
    if (!monitor)
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "language changes go unnoticed: %s",
                     error->message);
    return monitor;
}

} // namespace

LanguageWatch::LanguageWatch(std::function<void()> changed)
    : changed_(std::move(changed)), monitor_(monitor_settings()), values_(read()) {
    const auto file_event =
        +[](GFileMonitor* /*monitor*/, GFile* /*file*/, GFile* /*other*/, GFileMonitorEvent /*event*/,
            gpointer self) { static_cast<LanguageWatch*>(self)->file_changed(); };
    if (monitor_)
        g_signal_connect(monitor_.get(), "changed", G_CALLBACK(file_event), this);
}

LanguageWatch::~LanguageWatch() {
    if (monitor_)
        g_signal_handlers_disconnect_by_data(monitor_.get(), this);
    if (settling_ != 0)
        g_source_remove(settling_);
}

LanguageWatch::Values LanguageWatch::read() {
    return {.language = settings::text("db/menu_widget/language"),
            .mirrored = settings::text("db/menu_widget/mirrored")};
}

void LanguageWatch::file_changed() {
    if (settling_ != 0)
        g_source_remove(settling_);
    const auto quiet = +[](gpointer self) -> gboolean {
        static_cast<LanguageWatch*>(self)->compare();
        return G_SOURCE_REMOVE;
    };
    settling_ = g_timeout_add(quiet_milliseconds, quiet, this);
}

void LanguageWatch::compare() {
    settling_ = 0;
    if (auto now = read(); now != std::exchange(values_, now))
        changed_();
}

} // namespace platform
