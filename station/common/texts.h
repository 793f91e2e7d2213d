/** Texts in the values of bus calls. */
#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

namespace station {

/** The texts of a list. */
std::vector<std::string> texts_of(GVariant* list);

/** A floating list of texts. */
GVariant* list_of(const std::vector<std::string>& texts);

/** A value as a person reads it, a text without quotation marks. */
std::string printed(GVariant* value);

} // namespace station
