/** A private settings file. */
#pragma once

#include "support/environment.h"

namespace test {

/** Provides a settings file with this content during its lifetime. */
class SettingsFolder {
public:
    explicit SettingsFolder(const std::string& content) { put_file(file(), content); }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;
    ~SettingsFolder() { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::filesystem::path file() const { return folder_ / "tv-platform" / "settings.ini"; }

private:
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "settings_of_test";
    ScopedEnvironment environment_{"XDG_CONFIG_HOME", folder_};
};

} // namespace test
