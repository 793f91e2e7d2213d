/** Layouts as their holders see them. */
#pragma once

#include "toolkit/arranging/placement.h"

#include <Elementary.h>

namespace vell {

/** The size that a layout's items need. */
Size layout_content_size(const Evas_Object* layout);

/** The items of a layout, in the order appended; empty when `layout` is not one. */
std::vector<Evas_Object*> layout_items(const Evas_Object* layout);

} // namespace vell
