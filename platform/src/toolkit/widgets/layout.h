/** Layouts as their holders see them. */
#pragma once

#include <Elementary.h>

#include <vector>

namespace vell {

/** The items of a layout, in the order appended; empty when `layout` is not one. */
std::vector<Evas_Object*> layout_items(const Evas_Object* layout);

} // namespace vell
