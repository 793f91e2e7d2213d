#pragma once

#include "support/files.h"

#include <cstdlib>

namespace test {

/** Provides a settings file with this content during its lifetime. */
class SettingsFolder {
public:
    explicit SettingsFolder(const std::string& content) {
        setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
        put_file(file(), content);
    }
    ~SettingsFolder() { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::filesystem::path file() const { return folder_ / "tv-platform" / "settings.ini"; }

private:
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "settings_of_test";
};

} // namespace test
