// Only the new interface of EFL tells a group of objects from a single one.
#define EFL_BETA_API_SUPPORT

#include "support/canvas.h"

#include "support/screen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string_view>
#include <utility>

namespace test {
namespace {

using Visitor = std::function<void(Evas_Object* drawn, Evas_Object* widget)>;

void visit_below(Evas_Object* object, Evas_Object* widget, const Visitor& visitor) {
    if (evas_object_visible_get(object) == EINA_FALSE)
        return;
    if (efl_isa(object, EFL_CANVAS_GROUP_CLASS) == EINA_FALSE) {
        visitor(object, widget);
        return;
    }
    if (elm_object_widget_check(object) != EINA_FALSE)
        widget = object;
    Eina_List* const members = evas_object_smart_members_get(object);
    for (const Eina_List* node = members; node != nullptr; node = eina_list_next(node))
        visit_below(static_cast<Evas_Object*>(eina_list_data_get(node)), widget, visitor);
    eina_list_free(members);
}

void visit(Evas_Object* window, const Visitor& visitor) {
    for (Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(window)); object != nullptr;
         object = evas_object_above_get(object))
        visit_below(object, nullptr, visitor);
}

bool is_type(const Evas_Object* object, std::string_view type) {
    return evas_object_type_get(object) == type;
}

/** The size that a line of text has when nothing limits it. */
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

bool is_whole_block(const Evas_Object* block) {
    int width = 0;
    int height = 0;
    evas_object_textblock_size_native_get(block, &width, &height);
    const Eina_Rectangle place = geometry(block);
    return width <= place.w && height <= place.h;
}

bool is_in_popup(Evas_Object* widget) {
    while (widget != nullptr && !is_type(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

/** Red, green and blue times the opacity, and the opacity, 0 to 1 each. */
using Color = std::array<double, 4>;

Color color_of(const Evas_Object* drawn) {
    std::array<int, 4> color{};
    evas_object_color_get(drawn, color.data(), &color[1], &color[2], &color[3]);
    return {color[0] / 255.0, color[1] / 255.0, color[2] / 255.0, color[3] / 255.0};
}

Color class_color(Evas_Object* widget, const char* color_class) {
    std::array<int, 4> color{};
    edje_object_color_class_get(elm_layout_edje_get(widget), color_class, color.data(), &color[1], &color[2],
                                &color[3], nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                nullptr);
    const double opacity = color[3] / 255.0;
    return {color[0] / 255.0 * opacity, color[1] / 255.0 * opacity, color[2] / 255.0 * opacity, opacity};
}

Color over(const Color& top, const Color& below) {
    Color color{};
    std::ranges::transform(top, below, color.begin(),
                           [&](double one, double other) { return one + other * (1.0 - top[3]); });
    return color;
}

/** As the Web Content Accessibility Guidelines reckon it. */
double luminance(const Color& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

/** A picture of which only the border is drawn. */
bool is_frame(const Evas_Object* drawn) {
    return is_type(drawn, "image") &&
           evas_object_image_border_center_fill_get(drawn) == EVAS_BORDER_FILL_NONE;
}

/** What has been drawn so far, over black. The theme's pictures are white; their colour is the object's. */
class Grounds {
public:
    void add(const Evas_Object* drawn, const Evas_Object* widget) {
        // Without a widget it is the window's own frame, and what clips others is not drawn.
        if (widget == nullptr || evas_object_clipees_has(drawn) != EINA_FALSE)
            return;
        if (is_type(drawn, "rectangle") || (is_type(drawn, "image") && !is_frame(drawn)))
            drawn_.emplace_back(geometry(drawn), color_of(drawn));
    }
    /** Of something drawn now at this place. */
    [[nodiscard]] double contrast(const Color& color, const Eina_Rectangle& place) const {
        Color ground{0.0, 0.0, 0.0, 1.0};
        for (const auto& [area, fill] : drawn_)
            if (is_inside(place, area))
                ground = over(fill, ground);
        const double below = luminance(ground) + 0.05;
        const double above = luminance(over(color, ground)) + 0.05;
        return std::max(above, below) / std::min(above, below);
    }

private:
    std::vector<std::pair<Eina_Rectangle, Color>> drawn_;
};

} // namespace

std::vector<DrawnText> drawn_texts(Evas_Object* window) {
    std::vector<DrawnText> texts;
    Grounds grounds;
    bool popup_is_open = false;
    visit(window, [&](Evas_Object* drawn, Evas_Object* widget) {
        grounds.add(drawn, widget);
        const bool is_block = is_type(drawn, "textblock");
        // The window's own frame, behind everything, has a title too.
        if (widget == nullptr || (!is_block && !is_type(drawn, "text")))
            return;
        const char* const text =
            is_block ? evas_object_textblock_text_markup_get(drawn) : evas_object_text_text_get(drawn);
        if (text == nullptr || *text == '\0')
            return;
        const bool whole = is_block ? is_whole_block(drawn) : natural_width(drawn) <= geometry(drawn).w;
        popup_is_open = popup_is_open || is_in_popup(widget);
        // A block's colour is in its style; it is the theme's quiet text.
        const Color color = is_block ? class_color(widget, "vell/text/quiet") : color_of(drawn);
        texts.push_back({text, geometry(drawn), geometry(widget), whole, !is_in_popup(widget),
                         grounds.contrast(color, geometry(drawn))});
    });
    for (DrawnText& text : texts)
        text.covered = text.covered && popup_is_open;
    return texts;
}

std::optional<DrawnRing> focus_ring(Evas_Object* window) {
    std::optional<DrawnRing> ring;
    Grounds grounds;
    visit(window, [&](Evas_Object* drawn, Evas_Object* widget) {
        grounds.add(drawn, widget);
        if (widget == nullptr && is_frame(drawn))
            ring = DrawnRing{geometry(drawn), grounds.contrast(color_of(drawn), geometry(drawn))};
    });
    return ring;
}

std::vector<double> picture_scales(Evas_Object* window) {
    std::vector<double> scales;
    visit(window, [&scales](Evas_Object* drawn, Evas_Object*) {
        int width = 0;
        int height = 0;
        if (!is_type(drawn, "image"))
            return;
        evas_object_image_size_get(drawn, &width, &height);
        int border = 0;
        evas_object_image_border_get(drawn, &border, nullptr, nullptr, nullptr);
        scales.push_back(border > 0 ? evas_object_image_border_scale_get(drawn)
                                    : static_cast<double>(geometry(drawn).w) / std::max(width, 1));
    });
    return scales;
}

bool overlap(const Eina_Rectangle& one, const Eina_Rectangle& other) {
    return one.x < other.x + other.w && other.x < one.x + one.w && one.y < other.y + other.h &&
           other.y < one.y + one.h;
}

bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

} // namespace test
