#include "writing_direction.h"

#include <array>
#include <unicode/uloc.h>

bool is_right_to_left(const char* language) {
    std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
    UErrorCode error = U_ZERO_ERROR;
    uloc_canonicalize(language, locale.data(), ULOC_FULLNAME_CAPACITY, &error);
    return U_SUCCESS(error) && error != U_STRING_NOT_TERMINATED_WARNING &&
           uloc_isRightToLeft(locale.data()) != 0;
}
