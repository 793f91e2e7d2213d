/** Answers as JSON. */
#pragma once

#include <gio/gio.h>

#include <string>

namespace simulator {

/** @param value consumed when it floats. */
std::string json_of(GVariant* value);

/** A list of widgets as a tree: what is in a dialog is among its "children". @param widgets an aa{sv}. */
std::string tree_of(GVariant* widgets);

} // namespace simulator
