#include "widget.h"

#include <platform/vell.h>

Evas_Object* elm_vell_bg_add(Evas_Object* window) {
    return window == nullptr ? nullptr : vell::adopt(elm_bg_add(window), vell::Family::background);
}

void elm_vell_bg_grid_show(Evas_Object* /*background*/, int /*shown*/) {}
