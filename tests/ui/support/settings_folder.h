/** Settings of the test's own. */
#pragma once

#include "support/surroundings.h"

namespace test {

/** The settings file has this content for as long as it lives. */
class SettingsFolder {
public:
    explicit SettingsFolder(const std::string& content) : environment_("XDG_CONFIG_HOME", folder_) {
        put_file(folder_ / "tv-platform" / "settings.ini", content);
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;
    ~SettingsFolder() { std::filesystem::remove_all(folder_); }

private:
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "settings_of_test";
    ScopedEnvironment environment_;
};

} // namespace test
