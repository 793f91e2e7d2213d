/** Answers as people or programs read them. */
#pragma once

#include <gio/gio.h>

#include <string>

namespace simulator {

/**
 * A value on one line: a text as it is, texts with blanks between them, a dictionary as "NAME=VALUE" words, the texts
 * of each dictionary of a list with " | " between them.
 */
std::string to_words(GVariant* value);

std::string to_json(GVariant* value);

} // namespace simulator
