#include "settings/settings_file.h"
#include "input.h"

#include <filesystem>
#include <fstream>
#include <glib.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::filesystem::path folder = [] {
        g_autofree char* made = g_dir_make_tmp("settings-XXXXXX", nullptr);
        g_setenv("XDG_CONFIG_HOME", made, TRUE);
        std::filesystem::create_directory(std::filesystem::path(made) / "tv-platform");
        return std::filesystem::path(made);
    }();
    std::ofstream(folder / "tv-platform" / "settings.ini", std::ios::binary) << text_of(bytes, size);
    platform::settings::text("db/menu_widget/language");
    platform::settings::boolean("db/menu_widget/mirrored");
    const auto screen = platform::settings::size("screen/size");
    expect(!screen || (screen->width >= 1 && screen->height >= 1));
    return 0;
}
