#include "color.h"

#include <platform/log.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace vell {
namespace {

/** Red, green, blue and opacity, 0 to 255 each. */
using Color = std::array<int, 4>;

std::optional<Color> parse_hexadecimal(std::string_view text) {
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#')
        return std::nullopt;
    Color color{0, 0, 0, 255};
    for (std::size_t i = 0; 2 * i + 1 < text.size(); ++i) {
        const std::string_view digits = text.substr(2 * i + 1, 2);
        const char* const end = digits.data() + digits.size();
        unsigned value = 0; // unsigned: a sign is no digit
        if (std::from_chars(digits.data(), end, value, 16).ptr != end)
            return std::nullopt;
        color.at(i) = static_cast<int>(value);
    }
    return color;
}

std::optional<Color> theme_color(Evas_Object* widget, const char* color_class) {
    Color color{};
    auto& [red, green, blue, opacity] = color;
    if (edje_object_color_class_get(elm_layout_edje_get(widget), color_class, &red, &green, &blue, &opacity,
                                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr) == EINA_FALSE)
        return std::nullopt;
    return color;
}

} // namespace

std::optional<int> set_color(Evas_Object* widget, const char* color_class, const char* color, int percent,
                             int least) {
    if (color == nullptr)
        return std::nullopt;
    auto value = parse_hexadecimal(color);
    if (!value)
        value = theme_color(widget, color);
    if (!value) {
        __dlog_print(platform::LogBuffer::main, platform::LogPriority::error, "VELL", "no such colour: %s",
                     color);
        return std::nullopt;
    }
    const auto& [red, green, blue, own_opacity] = *value;
    int opacity = own_opacity * percent / 100;
    if (opacity > 0)
        opacity = std::max(opacity, least);
    edje_object_color_class_set(elm_layout_edje_get(widget), color_class, red, green, blue, opacity, 0, 0, 0,
                                0, 0, 0, 0, 0);
    return opacity;
}

} // namespace vell
