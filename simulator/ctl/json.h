/** Answers as JSON. */
#pragma once

#include <gio/gio.h>

#include <string>

namespace simulator {

/** @param value consumed when it floats. */
std::string json_of(GVariant* value);

} // namespace simulator
