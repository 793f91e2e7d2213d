/** Where the arrow keys lead on a page with a header. */
#pragma once

#include <Elementary.h>

namespace vell {

/**
 * Has a key to the side leave the focus where it is when nothing beside it can take it: Elementary takes the
 * nearest of all widgets that way, which for one in the page's middle may well be another page's tab. The
 * focus ring glides along with every key that moves the focus.
 */
void watch_focus_moves(Evas_Object* window);

/** Has the focus go to `tab` whenever a key moves it up into the header. */
void enter_header_at(Evas_Object* header, Evas_Object* tab);

} // namespace vell
