#include "behaviour.h"

#include <sstream>

namespace station {

std::optional<Behaviour> parse_behaviour(const std::string& text) {
    using Kind = Behaviour::Kind;
    if (text == "normal")
        return Behaviour{Kind::normal};
    if (text == "error")
        return Behaviour{Kind::error};
    if (text == "never")
        return Behaviour{Kind::never};
    if (text == "wrong signature")
        return Behaviour{Kind::wrong_signature};

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
