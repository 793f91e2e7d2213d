#include "color.h"

#include <platform/log.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>

namespace vell {
namespace {

/** Red, green, blue and opacity, 0 to 255 each. */
using Color = std::array<int, 4>;

std::optional<Color> parse_hexadecimal(const std::string& text) {
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#')
        return std::nullopt;
    const std::string digits = text.substr(1) + (text.size() == 7 ? "FF" : "");
    const char* const end = digits.data() + digits.size();
    std::uint32_t value = 0; // unsigned: a sign is no digit
    if (std::from_chars(digits.data(), end, value, 16).ptr != end)
        return std::nullopt;
    const auto part = [value](unsigned shift) { return static_cast<int>(value >> shift & 0xFFU); };
    return Color{part(24), part(16), part(8), part(0)};
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
