/** What is waited for. */
#pragma once

#include "screen.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <utility>

namespace simulator {

/** A look at the screen that says whether it is as wanted. */
struct Condition {
    std::string wanted; /**< in words, for the one who waited in vain */
    std::function<bool(const Screen&)> is_met;
};

/** The screen did not become what was waited for; says what it showed instead. */
class NotSeen : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** A wait that has begun, and lasts as long as the patience of who waits. */
class Wait {
public:
    Wait(Condition condition, std::chrono::milliseconds patience)
        : condition_(std::move(condition)), patience_(patience),
          deadline_(std::chrono::steady_clock::now() + patience) {}

    /** @param screen the newest look at it. @throws NotSeen when it is not as wanted and patience is out. */
    [[nodiscard]] bool is_over(const Screen& screen) const;
    [[nodiscard]] const std::string& wanted() const { return condition_.wanted; }

private:
    Condition condition_;
    std::chrono::milliseconds patience_;
    std::chrono::steady_clock::time_point deadline_;
};

Condition text_shown(const std::string& text);
/** Something can be read, and not this text. */
Condition text_gone(const std::string& text);
Condition focus_on(const std::string& name);
/** The focused widget shows this number. */
Condition focused_number(int value);

} // namespace simulator
