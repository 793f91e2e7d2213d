#include "settings/settings_file.h"
#include "input.h"
#include "support/settings_folder.h"

void fuzz(const std::string& input) {
    static const test::SettingsFolder settings("");
    put_file(settings.file(), input);
    platform::settings::text("db/menu_widget/language");
    platform::settings::boolean("db/menu_widget/mirrored");
    const auto screen = platform::settings::size("screen/size");
    expect(!screen || (screen->width >= 1 && screen->height >= 1));
}
