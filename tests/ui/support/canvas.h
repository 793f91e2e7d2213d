/** What is drawn on a window's canvas, below the widgets: texts and pictures, as the theme in use has them. */
#pragma once

#include <Elementary.h>

#include <optional>
#include <string>
#include <vector>

namespace test {

struct DrawnText {
    std::string text;
    Eina_Rectangle place;  /**< what it takes on the screen */
    Eina_Rectangle widget; /**< the widget it belongs to */
    bool whole;            /**< neither cut nor shortened with an ellipsis */
    bool covered;          /**< an open popup lies over its page */
    double contrast;       /**< to what is drawn below it, 1 to 21 */
};

/** The frame around the widget with the focus. */
struct DrawnRing {
    Eina_Rectangle place;
    double contrast; /**< to what is drawn below it, 1 to 21 */
};

/** The texts that can be seen. */
std::vector<DrawnText> drawn_texts(Evas_Object* window);

/** The focus ring; nothing when none can be seen. */
std::optional<DrawnRing> focus_ring(Evas_Object* window);

/** By how much the pictures that can be seen are scaled: more than 1.0 is blurred. */
std::vector<double> picture_scales(Evas_Object* window);

/** Whether two areas have a pixel in common. */
bool overlap(const Eina_Rectangle& one, const Eina_Rectangle& other);
/** Whether all of an area lies in another. */
bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer);

} // namespace test
