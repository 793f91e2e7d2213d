/** Conversions between strings, numbers and D-Bus values. */
#pragma once

#include "owned.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

std::string joined(const std::vector<std::string>& words, const std::string& between);

/** Parses the whole text as a number; returns nothing if that fails. */
std::optional<int> parse_int(std::string_view text);

/** Converts a D-Bus list (as). */
std::vector<std::string> to_strings(GVariant* list);

/** Returns a floating list (as). */
GVariant* to_variant(const std::vector<std::string>& texts);

/** Parses a tuple in GVariant text, for example "(7, 'x')"; returns null if the text is not a tuple. */
Value tuple_of(const std::string& text);

/** Formats a value for people; a string gets no quotation marks. */
std::string printed(GVariant* value);

} // namespace simulator
