/** Changes of the user interface's language and writing direction. */
#pragma once

#include "common/object_pointer.h"

#include <functional>
#include <gio/gio.h>
#include <optional>
#include <string>

namespace platform {

/**
 * Watches the settings file, which need not exist, and tells once when the language or the mirroring in it
 * has another value than before.
 */
class LanguageWatch {
public:
    /** `changed` is called from GLib's default context. */
    explicit LanguageWatch(std::function<void()> changed);
    ~LanguageWatch();
    LanguageWatch(const LanguageWatch&) = delete;
    LanguageWatch& operator=(const LanguageWatch&) = delete;

private:
    struct Values {
        std::optional<std::string> language;
        std::optional<std::string> mirrored;
        bool operator==(const Values&) const = default;
    };
    static Values read();
    void file_changed();
    void compare();

    std::function<void()> changed_;
    ObjectPointer<GFileMonitor> monitor_;
    Values values_;
    unsigned settling_ = 0; // the GLib source that compares once the file is quiet, 0 for none
};

} // namespace platform
