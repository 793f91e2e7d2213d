#include "accessible.h"
#include "button.h"
#include "efl_1_26/toolkit/focus_moves.h"
#include "layout.h"
#include "toolkit/arranging/items_box.h"
#include "toolkit/window/manager.h"

#include <platform/vell.h>

namespace {

using vell::Area;
using vell::Size;

struct Header {
    static constexpr const char* key = "vell/header";
    Evas_Object* rows = nullptr;
    Evas_Object* content = nullptr;
    Evas_Object* subheader = nullptr;
};

/** The header's content ends where the page's content area ends: 15 units from the window's edge. */
constexpr double side_margin_units = 15.0;

Area place_row(const Area& area, const Header& header, Evas_Object* row) {
    const auto [width, height] = vell::current_request(row).given;
    Area place{area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height};
    if (row == header.content) {
        const int margin = vell::Manager::instance().rescaled(elm_vell_unit_to_pixel(side_margin_units));
        place.x = elm_config_mirrored_get() != EINA_FALSE ? area.x + margin
                                                          : area.x + area.width - margin - place.width;
    }
    return place;
}

void hold_row(Evas_Object* header, Evas_Object* Header::*place, Evas_Object* row) {
    auto* const state = vell::attached<Header>(header);
    vell::Widget* const widget = vell::find(row, vell::Family::layout);
    if (state == nullptr || widget == nullptr)
        return;
    Size& given = widget->request.given;
    evas_object_geometry_get(row, nullptr, nullptr, &given.width, &given.height);
    state->*place = row;
    vell::items_box_append(state->rows, *widget);
    vell::Manager::instance().show_later(row);
}

void on_tab_pressed(void* data, Evas_Object* pressed, void*) {
    auto* const header = static_cast<Evas_Object*>(data);
    for (Evas_Object* const tab : vell::layout_items(vell::attached<Header>(header)->subheader))
        vell::mark_chosen(tab, tab == pressed);
    vell::enter_header_at(header, pressed);
}

} // namespace

Evas_Object* elm_vell_header_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_layout_add(parent);
    if (object == nullptr)
        return nullptr;
    elm_layout_theme_set(object, "vell", "header", "default");
    auto& header = vell::attach<Header>(object);
    header.rows =
        vell::items_box_add(object, [&header](const Area& area, std::span<Evas_Object* const> rows) {
            std::vector<Area> areas;
            for (Evas_Object* const row : rows)
                areas.push_back(place_row(area, header, row));
            return areas;
        });
    elm_object_part_content_set(object, "vell.rows", header.rows);
    return vell::adopt(object, vell::Family::header);
}

void elm_vell_header_style_set(Evas_Object* header, int style) {
    // One style is drawn: 1, a page's header with a row of tabs.
    if (vell::find(header, vell::Family::header) != nullptr && style == 1)
        elm_layout_theme_set(header, "vell", "header", "default");
}

void elm_vell_header_uiplate_enable(Evas_Object* header, bool enabled) {
    if (vell::find(header, vell::Family::header) != nullptr)
        elm_layout_signal_emit(header, enabled ? "vell,state,plated" : "vell,state,plain", "vell");
}

void elm_vell_header_text_set(Evas_Object* header, const char* text) {
    if (vell::find(header, vell::Family::header) == nullptr)
        return;
    elm_object_text_set(header, vell::markup(text).c_str());
    vell::set_accessible_role(header, vell::Role::heading);
    vell::set_accessible_name(header, text);
}

void elm_vell_header_content_set(Evas_Object* header, Evas_Object* content) {
    hold_row(header, &Header::content, content);
}

void elm_vell_subheader_content_set(Evas_Object* header, Evas_Object* content) {
    hold_row(header, &Header::subheader, content);
    auto* const state = vell::attached<Header>(header);
    if (state != nullptr && state->content != nullptr) { // read after the tabs
        elm_box_unpack(state->rows, state->content);
        elm_box_pack_end(state->rows, state->content);
    }
    for (Evas_Object* const tab : vell::layout_items(content))
        evas_object_smart_callback_add(tab, "pressed", on_tab_pressed, header);
}
