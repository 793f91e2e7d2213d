/** Words: joined, read as numbers, carried over a bus. */
#pragma once

#include "owned.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

std::string joined(const std::vector<std::string>& words, const std::string& between);

/** The number that the whole text is; nothing for any other text. */
std::optional<int> parse_int(std::string_view text);

/** The texts of a list. */
std::vector<std::string> to_strings(GVariant* list);

/** A floating list of texts. */
GVariant* to_variant(const std::vector<std::string>& texts);

/** The tuple that a GVariant text writes, for example "(7, 'x')"; null for any other text. */
Value tuple_of(const std::string& text);

/** A value as a person reads it, a text without quotation marks. */
std::string printed(GVariant* value);

} // namespace simulator
