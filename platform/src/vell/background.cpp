#include "widget.h"

#include <platform/vell.h>

namespace {

/** A grid of layout units: one line every ten, drawn over the background. */
Evas_Object* grid_add(Evas_Object* background) {
    Evas_Object* const grid = elm_grid_add(background);
    constexpr int columns = 240;
    constexpr int rows = 135;
    constexpr int step = 10;
    constexpr int faint = 24;
    elm_grid_size_set(grid, columns, rows);
    evas_object_size_hint_aspect_set(grid, EVAS_ASPECT_CONTROL_BOTH, columns, rows); // the page's area
    const auto add_line = [grid](int x, int y, int width, int height) {
        Evas_Object* const line = evas_object_rectangle_add(evas_object_evas_get(grid));
        evas_object_color_set(line, faint, faint, faint, faint);
        elm_grid_pack(grid, line, x, y, width, height);
        evas_object_show(line);
    };
    for (int x = step; x < columns; x += 2 * step)
        add_line(x, 0, step, rows);
    for (int y = step; y < rows; y += 2 * step)
        add_line(0, y, columns, step);
    return grid;
}

} // namespace

Evas_Object* elm_vell_bg_add(Evas_Object* window) {
    return window == nullptr ? nullptr : vell::adopt(elm_bg_add(window), vell::Family::background);
}

void elm_vell_bg_grid_show(Evas_Object* background, int shown) {
    if (vell::find(background, vell::Family::background) == nullptr)
        return;
    Evas_Object* const present = elm_object_part_content_get(background, "overlay");
    if (shown != 0 && present == nullptr)
        elm_object_part_content_set(background, "overlay", grid_add(background));
    else if (shown == 0 && present != nullptr)
        evas_object_del(present);
}
