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

bool parse_hexadecimal(const std::string& text, Color& color) {
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#')
        return false;
    const std::string digits = text.substr(1) + (text.size() == 7 ? "FF" : "");
    const char* const end = digits.data() + digits.size();
    std::uint32_t value = 0; // unsigned: rejects a sign
    if (std::from_chars(digits.data(), end, value, 16).ptr != end)
        return false;
    for (auto part = color.rbegin(); part != color.rend(); ++part, value >>= 8U)
        *part = static_cast<int>(value & 0xFFU);
    return true;
}

} // namespace

std::optional<int> set_color(Evas_Object* widget, const char* color_class, const char* color, int percent,
                             int least) {
    if (color == nullptr)
        return std::nullopt;
    Evas_Object* const drawn = elm_layout_edje_get(widget);
    Color value{};
    auto& [red, green, blue, opacity] = value;
    if (!parse_hexadecimal(color, value) &&
        edje_object_color_class_get(drawn, color, &red, &green, &blue, &opacity, nullptr, nullptr, nullptr,
                                    nullptr, nullptr, nullptr, nullptr, nullptr) == EINA_FALSE) {
        __dlog_print(platform::LogBuffer::main, platform::LogPriority::error, "VELL", "no such colour: %s",
                     color);
        return std::nullopt;
    }
    opacity = opacity * percent / 100;
    if (opacity > 0)
        opacity = std::max(opacity, least);
    edje_object_color_class_set(drawn, color_class, red, green, blue, opacity, 0, 0, 0, 0, 0, 0, 0, 0);
    return opacity;
}

} // namespace vell
