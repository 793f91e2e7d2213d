#include "behaviour.h"

#include "base/strings.h"

#include <sstream>

namespace simulator {

std::optional<Behaviour> parse_behaviour(const std::string& text) {
    using Kind = Behaviour::Kind;
    if (text == "normal")
        return Behaviour{Kind::normal};
    if (text == "error")
        return Behaviour{Kind::error};
    if (text == "never")
        return Behaviour{Kind::never};
    if (text == "dies")
        return Behaviour{Kind::dies};
    constexpr std::string_view reply = "reply ";
    if (text.starts_with(reply)) {
        const std::string value = text.substr(reply.size());
        return tuple_of(value) ? std::optional(Behaviour{Kind::reply, 0, value}) : std::nullopt;
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

} // namespace simulator
