#include "layout.h"

#include "accessible.h"
#include "color.h"
#include "efl_1_26/toolkit/focus_moves.h"
#include "toolkit/arranging/items_box.h"
#include "toolkit/press/press.h"
#include "toolkit/window/manager.h"
#include "widget.h"

#include <platform/vell.h>

namespace vell {
namespace {

struct Layout {
    static constexpr const char* key = "vell/layout";
    Evas_Object* box = nullptr;
    Arrangement arrangement;
    bool is_root = false;
};

Arrangement current_arrangement(const Layout& layout) {
    const Manager& manager = Manager::instance();
    Arrangement arrangement = layout.arrangement;
    arrangement.gap = manager.rescaled(arrangement.gap);
    Padding& padding = arrangement.padding;
    for (int* const side : {&padding.left, &padding.right, &padding.top, &padding.bottom})
        *side = manager.rescaled(*side);
    arrangement.mirrored = elm_config_mirrored_get() != EINA_FALSE;
    return arrangement;
}

std::vector<ItemRequest> requests(std::span<Evas_Object* const> items) {
    std::vector<ItemRequest> requests;
    for (Evas_Object* const item : items)
        requests.push_back(current_request(item));
    return requests;
}

/** Applies `change` to the layout's arrangement and has it laid out anew. */
template <class Change>
void change_arrangement(Evas_Object* object, Change change) {
    auto* const layout = attached<Layout>(object);
    if (layout == nullptr)
        return;
    answer_press();
    change(layout->arrangement);
    items_box_changed(layout->box);
}

} // namespace

std::vector<Evas_Object*> layout_items(const Evas_Object* layout) {
    const auto* const state = attached<Layout>(layout);
    return state == nullptr ? std::vector<Evas_Object*>{} : items_in(state->box);
}

Size layout_content_size(const Evas_Object* layout) {
    const auto* const state = attached<Layout>(layout);
    return state == nullptr ? Size{}
                            : content_size(current_arrangement(*state), requests(layout_items(layout)));
}

} // namespace vell

using vell::Arrangement;
using vell::attached;
using vell::Layout;

Evas_Object* elm_vell_layout_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_layout_add(parent);
    if (object == nullptr)
        return nullptr;
    elm_layout_theme_set(object, "vell", "layout", "default");
    auto& layout = vell::attach<Layout>(object);
    layout.box =
        vell::items_box_add(object, [&layout](const vell::Area& area, std::span<Evas_Object* const> items) {
            return vell::place(layout.is_root ? vell::Manager::instance().page_area(area) : area,
                               vell::current_arrangement(layout), vell::requests(items));
        });
    elm_object_part_content_set(object, "vell.items", layout.box);
    return vell::adopt(object, vell::Family::layout);
}

void elm_vell_root_layout_set(Evas_Object* layout, int root) {
    auto* const state = attached<Layout>(layout);
    if (state == nullptr)
        return;
    state->is_root = root != 0;
    vell::items_box_changed(state->box);
}

void elm_vell_root_layout_render(Evas_Object* layout) {
    if (attached<Layout>(layout) == nullptr)
        return;
    vell::Manager::instance().show_waiting();
    evas_smart_objects_calculate(evas_object_evas_get(layout));
}

void elm_vell_layout_type_set(Evas_Object* layout, int type) {
    if (type < static_cast<int>(vell::LayoutType::stack) || type > static_cast<int>(vell::LayoutType::filled))
        return;
    vell::change_arrangement(layout,
                             [type](Arrangement& to) { to.type = static_cast<vell::LayoutType>(type); });
}

void elm_vell_layout_align_set(Evas_Object* object, int align) {
    if (align < 1 || align > 9)
        return;
    vell::change_arrangement(object, [align](Arrangement& to) { to.align = align; });
}

void elm_vell_layout_item_gap_set(Evas_Object* layout, int gap) {
    vell::change_arrangement(layout, [gap](Arrangement& to) { to.gap = gap; });
}

void elm_vell_layout_padding_set(Evas_Object* layout, int left, int right, int top, int bottom) {
    vell::change_arrangement(layout, [=](Arrangement& to) { to.padding = {left, right, top, bottom}; });
}

void elm_vell_layout_bg_color_set(Evas_Object* layout, const char* color) {
    if (attached<Layout>(layout) == nullptr)
        return;
    if (const auto opacity = vell::set_color(layout, "vell/layout/background", color))
        elm_layout_signal_emit(
            layout, *opacity == 255 ? "vell,background,opaque" : "vell,background,translucent", "vell");
}

void elm_vell_layout_item_append(Evas_Object* layout, Evas_Object* item, int width, int height) {
    auto* const holder = attached<Layout>(layout);
    vell::Widget* const widget = vell::find(item);
    if (holder == nullptr || widget == nullptr)
        return;
    vell::answer_press();
    widget->request.given = {width, height};
    const auto before = vell::layout_items(layout);
    if (widget->family == vell::Family::button && !before.empty() &&
        vell::find(before.back(), vell::Family::textbox) != nullptr)
        vell::label_accessible(item, before.back());
    vell::items_box_append(holder->box, *widget);
    vell::Manager::instance().show_later(item);
}

void elm_vell_layout_clear(Evas_Object* layout) {
    auto* const holder = attached<Layout>(layout);
    if (holder == nullptr)
        return;
    vell::answer_press();
    vell::drop_focus_in(layout);
    elm_box_clear(holder->box);
}
