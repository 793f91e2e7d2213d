#include "support/screen.h"

#include "ui_driver/screenshot.h"

#include <Ecore_X.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace test {
namespace {

bool is_type(const Evas_Object* object, std::string_view type) {
    return evas_object_type_get(object) == type;
}

/** The width that a line of text has when nothing limits it. */
int natural_width(Evas_Object* text) {
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    evas_object_text_font_get(text, &font, &size);
    Evas_Object* const copy = evas_object_text_add(evas_object_evas_get(text));
    evas_object_scale_set(copy, evas_object_scale_get(text));
    evas_object_text_font_set(copy, font, size);
    evas_object_text_text_set(copy, evas_object_text_text_get(text));
    const int width = geometry(copy).w;
    evas_object_del(copy);
    return width;
}

bool is_whole(Evas_Object* text) {
    const Eina_Rectangle place = geometry(text);
    if (is_type(text, "text"))
        return natural_width(text) <= place.w;
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(text, &width, &height);
    return width <= place.w && height <= place.h;
}

const char* text_of(Evas_Object* object) {
    if (is_type(object, "text"))
        return evas_object_text_text_get(object);
    return is_type(object, "textblock") ? evas_object_textblock_text_markup_get(object) : nullptr;
}

bool is_in_popup(Evas_Object* widget) {
    while (widget != nullptr && !is_type(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

/** As the Web Content Accessibility Guidelines reckon it. */
double luminance(const simulator::Color& color) {
    const auto linear = [](std::uint8_t strength) {
        const double part = strength / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

} // namespace

std::vector<DrawnText> drawn_texts(Evas_Object* window) {
    std::vector<DrawnText> texts;
    bool popup_is_open = false;
    visit(window, [&](Evas_Object* drawn, Evas_Object* widget) {
        const char* const text = text_of(drawn);
        // The window's own frame, behind everything and no widget, has a title too.
        if (widget == nullptr || text == nullptr || *text == '\0')
            return;
        const bool in_popup = is_in_popup(widget);
        popup_is_open = popup_is_open || in_popup;
        texts.push_back({text, geometry(drawn), geometry(widget), is_whole(drawn), !in_popup,
                         is_type(widget, "elm_button") && elm_object_focus_allow_get(widget) != EINA_FALSE});
    });
    for (DrawnText& text : texts)
        text.covered = text.covered && popup_is_open;
    return texts;
}

std::optional<Eina_Rectangle> focus_ring(Evas_Object* window) {
    std::optional<Eina_Rectangle> ring;
    constexpr int own_border = 72; // of no other picture
    visit(window, [&ring](Evas_Object* drawn, Evas_Object*) {
        int border = 0;
        if (is_type(drawn, "image"))
            evas_object_image_border_get(drawn, &border, nullptr, nullptr, nullptr);
        if (border == own_border)
            ring = geometry(drawn);
    });
    return ring;
}

std::vector<double> border_scales(Evas_Object* window) {
    std::vector<double> scales;
    visit(window, [&scales](Evas_Object* drawn, Evas_Object*) {
        if (is_type(drawn, "image"))
            scales.push_back(evas_object_image_border_scale_get(drawn));
    });
    return scales;
}

double contrast(const Eina_Rectangle& area) {
    const simulator::Pixels pixels(static_cast<_XDisplay*>(ecore_x_display_get()), area.x, area.y, area.w,
                                   area.h);
    double darkest = 1.0;
    double lightest = 0.0;
    for (int y = 0; y < area.h; ++y)
        for (int x = 0; x < area.w; ++x) {
            const double light = luminance(pixels.at(x, y));
            darkest = std::min(darkest, light);
            lightest = std::max(lightest, light);
        }
    return (lightest + 0.05) / (darkest + 0.05);
}

bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

} // namespace test
