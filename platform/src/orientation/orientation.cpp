#include "platform/orientation.h"

#include "settings/settings_file.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

using namespace std::literals;

// A table, because loading a library with all languages takes a tenth of the start time and 2.6 MB.
constexpr std::array right_to_left_languages{"ar"sv, "arc"sv, "ckb"sv, "dv"sv,  "fa"sv,  "he"sv,
                                             "iw"sv, "ji"sv,  "nqo"sv, "ps"sv,  "sd"sv,  "syr"sv,
                                             "ug"sv, "ur"sv,  "yi"sv,  "pnb"sv, "mzn"sv, "lrc"sv};
constexpr std::array right_to_left_scripts{"Arab"sv, "Hebr"sv, "Thaa"sv, "Syrc"sv, "Nkoo"sv};

/** Removes and returns the next part of "az_Arab_IR.utf8" or "az-Arab-IR" (Arab: writing system); empty at the end. */
std::string_view next_part(std::string_view& language) {
    const std::size_t end = language.find_first_of("_-");
    const std::string_view part = language.substr(0, end);
    language.remove_prefix(end == std::string_view::npos ? language.size() : end + 1);
    return part;
}

bool is_right_to_left(std::string_view language) {
    constexpr std::size_t script_length = 4;
    language = language.substr(0, language.find_first_of(".@"));
    const std::string_view name = next_part(language);
    const std::string_view script = next_part(language);
    return script.size() == script_length ? std::ranges::count(right_to_left_scripts, script) != 0
                                          : std::ranges::count(right_to_left_languages, name) != 0;
}

} // namespace

int ua_UI_orientation_get() {
    if (const std::optional<bool> mirrored = platform::settings::boolean("db/menu_widget/mirrored"))
        return *mirrored ? 1 : 0;
    const std::optional<std::string> language = platform::settings::text("db/menu_widget/language");
    return language && is_right_to_left(*language) ? 1 : 0;
}
