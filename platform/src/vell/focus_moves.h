/** Where the arrow keys lead on a page with a header. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Has the focus go to `tab` whenever a key moves it up into the header, and stay where it is when a key to
 * the side has nothing beside it to go to. Elementary takes the nearest of all widgets that way, which for
 * one in the page's middle may well be another page's tab.
 */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
