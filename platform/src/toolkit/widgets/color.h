/** Colours of individual widgets, which override the theme. */
#pragma once

#include <Elementary.h>
#include <optional>

namespace vell {

/**
 * Sets a colour class of one widget.
 *
 * @param color   "#RRGGBBAA", "#RRGGBB", or the name of a colour class of the theme; anything else is logged
 *                and ignored.
 * @param percent an opacity, by which the colour's own opacity is multiplied.
 * @param least   the smallest opacity above 0, from 0 to 255.
 * @return the resulting opacity, 0 to 255; nothing if the colour was ignored.
 */
std::optional<int> set_color(Evas_Object* widget, const char* color_class, const char* color,
                             int percent = 100, int least = 0);

} // namespace vell
