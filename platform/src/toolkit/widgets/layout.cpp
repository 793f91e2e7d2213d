#include "color.h"
#include "efl_1_26/toolkit/accessible.h"
#include "efl_1_26/toolkit/focus_moves.h"
#include "toolkit/layout_engine/items_box.h"
#include "toolkit/press/press.h"
#include "widget.h"

#include <platform/vell.h>

using vell::Arrangement;
using vell::Family;
using vell::Item;
using vell::LayoutType;

namespace {

/** Returns the box with the layout's items; null if `layout` is not a layout. */
Evas_Object* box_of(const Evas_Object* layout) {
    return vell::is_a(Family::layout, layout) ? vell::attached<Item>(layout)->contents : nullptr;
}

/** Applies `change` to the layout's arrangement and places its items again. */
template <class Change>
void change_arrangement(Evas_Object* layout, Change change) {
    Evas_Object* const box = box_of(layout);
    if (box == nullptr)
        return;
    vell::answer_press();
    change(vell::attached<vell::ItemsBox>(box)->arrangement);
    vell::items_box_changed(box);
}

} // namespace

Evas_Object* elm_vell_layout_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_layout_add(parent);
    if (vell::adopt(object, Family::layout) == nullptr)
        return nullptr;
    elm_layout_theme_set(object, "vell", "layout", "default");
    Evas_Object* const box = vell::items_box_add(object);
    vell::attached<Item>(object)->contents = box;
    elm_object_part_content_set(object, "vell.items", box);
    return object;
}

void elm_vell_root_layout_set(Evas_Object* layout, int root) {
    Evas_Object* const box = box_of(layout);
    if (box == nullptr)
        return;
    vell::attached<vell::ItemsBox>(box)->is_page = root != 0;
    vell::items_box_changed(box);
}

void elm_vell_root_layout_render(Evas_Object* layout) {
    if (box_of(layout) == nullptr)
        return;
    vell::show_waiting();
    evas_smart_objects_calculate(evas_object_evas_get(layout));
}

void elm_vell_layout_type_set(Evas_Object* layout, int type) {
    if (type >= static_cast<int>(LayoutType::stack) && type <= static_cast<int>(LayoutType::filled))
        change_arrangement(layout, [type](Arrangement& to) { to.type = static_cast<LayoutType>(type); });
}

void elm_vell_layout_align_set(Evas_Object* object, int align) {
    if (align >= 1 && align <= 9)
        change_arrangement(object, [align](Arrangement& to) { to.align = align; });
}

void elm_vell_layout_item_gap_set(Evas_Object* layout, int gap) {
    change_arrangement(layout, [gap](Arrangement& to) { to.gap = gap; });
}

void elm_vell_layout_padding_set(Evas_Object* layout, int left, int right, int top, int bottom) {
    change_arrangement(layout, [=](Arrangement& to) { to.padding = {left, right, top, bottom}; });
}

void elm_vell_layout_bg_color_set(Evas_Object* layout, const char* color) {
    if (box_of(layout) == nullptr)
        return;
    if (const auto opacity = vell::set_color(layout, "vell/layout/background", color))
        elm_layout_signal_emit(
            layout, *opacity == 255 ? "vell,background,opaque" : "vell,background,translucent", "vell");
}

void elm_vell_layout_item_append(Evas_Object* layout, Evas_Object* widget, int width, int height) {
    Evas_Object* const box = box_of(layout);
    auto* const item = vell::attached<Item>(widget);
    if (box == nullptr || item == nullptr)
        return;
    vell::answer_press();
    item->request.given = {width, height};
    const auto before = vell::items_in(box);
    if (vell::is_a(Family::button, widget) && !before.empty() && vell::is_a(Family::textbox, before.back()))
        vell::label_accessible(widget, before.back());
    vell::items_box_insert(box, widget);
}

void elm_vell_layout_clear(Evas_Object* layout) {
    Evas_Object* const box = box_of(layout);
    if (box == nullptr)
        return;
    vell::answer_press();
    vell::drop_focus_in(layout);
    elm_box_clear(box);
}
