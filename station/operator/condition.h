/** What an operator waits for. */
#pragma once

#include "screen.h"

#include <chrono>
#include <functional>
#include <string>

namespace station {

/** A look at the screen that says whether it is as wanted. */
struct Condition {
    std::string wanted; /**< in words, for the one who waited in vain */
    std::function<bool(const Screen&)> is_met;

    /** What to say when it was not met in this time. */
    [[nodiscard]] std::string not_seen(std::chrono::milliseconds waited, const Screen& screen) const;
};

Condition text_shown(const std::string& text);
/** Something can be read, and not this text. */
Condition text_gone(const std::string& text);
Condition focus_on(const std::string& name);
/** The focused widget shows this number. */
Condition focused_number(int value);

} // namespace station
