#include "platform/orientation.h"

#include "settings_file.h"

#include <array>
#include <unicode/uloc.h>

namespace {

/** Language settings are written as a POSIX locale ("ar_AE.utf8") or as a language tag ("ar-AE"). */
bool is_right_to_left(const std::string& language) {
    std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
    UErrorCode error = U_ZERO_ERROR;
    uloc_canonicalize(language.c_str(), locale.data(), ULOC_FULLNAME_CAPACITY, &error);
    return U_SUCCESS(error) && error != U_STRING_NOT_TERMINATED_WARNING && uloc_isRightToLeft(locale.data());
}

} // namespace

int ua_UI_orientation_get() {
    if (const std::optional<bool> mirrored = platform::settings::boolean("db/menu_widget/mirrored"))
        return *mirrored ? 1 : 0;
    const std::optional<std::string> language = platform::settings::text("db/menu_widget/language");
    return language && is_right_to_left(*language) ? 1 : 0;
}
