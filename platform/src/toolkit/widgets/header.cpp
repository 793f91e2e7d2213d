#include "efl_1_26/toolkit/accessible.h"
#include "efl_1_26/toolkit/focus_moves.h"
#include "toolkit/layout_engine/items_box.h"
#include "widget.h"

#include <platform/vell.h>

namespace {

/** The boxes for the tabs and for the content; each covers the whole header. */
struct Header {
    static constexpr const char* key = "vell/header";
    Evas_Object* tabs = nullptr;
    Evas_Object* content = nullptr;
};

/** The header's content ends 15 units from the edge, like the page's content area. */
constexpr double side_margin_units = 15.0;

void hold_row(Evas_Object* header, Evas_Object* Header::*box, Evas_Object* row) {
    const auto* const state = vell::attached<Header>(header);
    if (state == nullptr || !vell::is_a(vell::Family::layout, row))
        return;
    vell::Size& given = vell::attached<vell::Item>(row)->request.given;
    evas_object_geometry_get(row, nullptr, nullptr, &given.width, &given.height);
    vell::items_box_insert(state->*box, row);
}

void on_tab_pressed(void* data, Evas_Object* pressed, void*) {
    auto* const header = static_cast<Evas_Object*>(data);
    for (const Evas_Object* const row : vell::items_in(vell::attached<Header>(header)->tabs))
        for (Evas_Object* const tab : vell::items_in(row)) {
            elm_layout_signal_emit(tab, tab == pressed ? "vell,state,chosen" : "vell,state,unchosen", "vell");
            vell::set_accessible_state(tab, EFL_ACCESS_STATE_TYPE_SELECTED, tab == pressed);
        }
    vell::enter_header_at(header, pressed);
}

} // namespace

Evas_Object* elm_vell_header_add(Evas_Object* parent) {
    Evas_Object* const object = parent == nullptr ? nullptr : elm_layout_add(parent);
    if (vell::adopt(object, vell::Family::header) == nullptr)
        return nullptr;
    elm_layout_theme_set(object, "vell", "header", "default");
    auto& [tabs, content] = vell::attach<Header>(object);
    tabs = vell::items_box_add(object);
    elm_object_part_content_set(object, "vell.tabs", tabs);
    const int margin = elm_vell_unit_to_pixel(side_margin_units);
    content = vell::items_box_add(object, {.arrangement{.align = 6, .padding{margin, margin, 0, 0}}});
    elm_object_part_content_set(object, "vell.content", content);
    return object;
}

void elm_vell_header_style_set(Evas_Object* /*header*/, int /*style*/) {} // there is one style

void elm_vell_header_uiplate_enable(Evas_Object* header, bool enabled) {
    if (vell::is_a(vell::Family::header, header))
        elm_layout_signal_emit(header, enabled ? "vell,state,plated" : "vell,state,plain", "vell");
}

void elm_vell_header_text_set(Evas_Object* header, const char* text) {
    if (!vell::is_a(vell::Family::header, header))
        return;
    elm_object_text_set(header, vell::markup(text).c_str());
    efl_access_object_role_set(header, EFL_ACCESS_ROLE_HEADING);
    vell::set_accessible_name(header, text);
}

void elm_vell_header_content_set(Evas_Object* header, Evas_Object* content) {
    hold_row(header, &Header::content, content);
}

void elm_vell_subheader_content_set(Evas_Object* header, Evas_Object* content) {
    hold_row(header, &Header::tabs, content);
    for (Evas_Object* const tab : vell::items_in(content))
        evas_object_smart_callback_add(tab, "pressed", on_tab_pressed, header);
}
