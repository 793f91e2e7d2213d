#include "color.h"
#include "common/object_data.h"
#include "efl_1_26/toolkit/accessible.h"
#include "toolkit/press/press.h"
#include "widget.h"

#include <platform/log.h>
#include <platform/vell.h>

#include <algorithm>
#include <string_view>

namespace {

struct Textbox {
    static constexpr const char* key = "vell/textbox";
    std::string color = "#FFFFFFFF";
    int opacity = 100;
};

/** The smallest opacity (75 %) at which text is readable from three metres. */
constexpr int least_opacity = 192;

void apply_color(Evas_Object* textbox, const Textbox& state) {
    vell::set_color(textbox, "vell/textbox/text", state.color.c_str(), state.opacity, least_opacity);
}

} // namespace

Evas_Object* elm_vell_textbox_add(Evas_Object* parent) {
    Evas_Object* const textbox = parent == nullptr ? nullptr : elm_layout_add(parent);
    if (textbox == nullptr)
        return nullptr;
    elm_layout_theme_set(textbox, "vell", "textbox", "default");
    efl_access_object_role_set(textbox, EFL_ACCESS_ROLE_LABEL);
    apply_color(textbox, vell::attach<Textbox>(textbox));
    return vell::adopt(textbox, vell::Family::textbox);
}

void elm_vell_textbox_text_set(Evas_Object* textbox, const char* text) {
    if (!vell::is_a(vell::Family::textbox, textbox))
        return;
    const std::string_view whole = text == nullptr ? "" : text;
    const auto separator = whole.find(": ");
    const auto value = separator == std::string_view::npos ? whole.size() : separator + 2;
    elm_object_text_set(textbox, vell::markup(std::string(whole.substr(0, value)).c_str()).c_str());
    elm_object_part_text_set(textbox, "vell.value", vell::markup(whole.data() + value).c_str());
    vell::set_accessible_name(textbox, text);
    elm_layout_sizing_eval(textbox);
    vell::show_renewed(textbox);
}

void elm_vell_textbox_text_opacity_set(Evas_Object* textbox, int percent) {
    auto* const state = vell::attached<Textbox>(textbox);
    if (state == nullptr)
        return;
    state->opacity = std::clamp(percent, 0, 100);
    apply_color(textbox, *state);
}

void elm_vell_textbox_style_property_set(Evas_Object* textbox, const char* property, const char* value) {
    auto* const state = vell::attached<Textbox>(textbox);
    if (state == nullptr || property == nullptr || value == nullptr)
        return;
    if (std::string_view(property) != "color") {
        __dlog_print(platform::LogBuffer::main, platform::LogPriority::error, "VELL",
                     "no such style property of a textbox: %s", property);
        return;
    }
    state->color = value;
    apply_color(textbox, *state);
}
