#include "behaviour.h"

#include <glib.h>

#include <sstream>

namespace station {
namespace {

constexpr std::string_view reply_word = "reply ";

bool is_tuple(const std::string& text) {
    g_autoptr(GVariant) value = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr);
    return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE_TUPLE) != FALSE;
}

} // namespace

std::optional<Behaviour> parse_behaviour(const std::string& text) {
    using Kind = Behaviour::Kind;
    if (text == "normal")
        return Behaviour{Kind::normal};
    if (text == "error")
        return Behaviour{Kind::error};
    if (text == "never")
        return Behaviour{Kind::never};
    if (text == "wrong signature")
        return Behaviour{Kind::reply, 0, "(0.5, 'neither text nor code')"};
    if (text.starts_with(reply_word)) {
        const std::string tuple = text.substr(reply_word.size());
        return is_tuple(tuple) ? std::optional(Behaviour{Kind::reply, 0, tuple}) : std::nullopt;
    }

    std::istringstream words(text);
    std::string word;
    std::string rest;
    int number = 0;
    if (!(words >> word >> number) || words >> rest)
        return std::nullopt;
    if (word == "code")
        return Behaviour{Kind::code, number};
    if (word == "late" && number >= 0)
        return Behaviour{Kind::late, number};
    return std::nullopt;
}

} // namespace station
