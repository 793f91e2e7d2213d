/** The way of the focus from a page up into its header. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Has the focus go to `tab` whenever a key moves it up into the header. Elementary takes the nearest of the
 * header's buttons, which for a widget in the page's middle may well be another page's tab.
 */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
