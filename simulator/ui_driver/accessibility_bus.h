/** Questions to what is on the accessibility bus. */
#pragma once

#include "base/gobject_release.h"
#include "screen.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

/** The application did not answer, or what was asked has gone. */
class LostSight : public std::runtime_error {
public:
    LostSight(const std::string& message, bool is_late) : std::runtime_error(message), is_late_(is_late) {}
    /** Nothing was answered in time. */
    [[nodiscard]] bool is_late() const { return is_late_; }

private:
    bool is_late_;
};

struct Question {
    Accessible whom;
    const char* interface;
    const char* method;
    GVariant* arguments;                        /**< a floating tuple, or null for none */
    const char* answer_type;                    /**< the type of the answer's tuple */
    std::function<void(GVariant* answer)> take; /**< takes the values of the answer */
};

/** Tells the session whether a screen reader is there. @throws std::runtime_error. */
void announce_screen_reader(bool is_there);

class AccessibilityBus {
public:
    /** Connects, and says that a screen reader is there. @throws std::runtime_error. */
    explicit AccessibilityBus(std::chrono::milliseconds patience);

    /**
     * Asks several questions that are under way at the same time, so that they cost little more than one;
     * then hands out the answers in the order of the questions, whose arguments are consumed.
     *
     * @throws LostSight at the first that did not come.
     */
    void ask(const std::vector<Question>& questions) const;

    [[nodiscard]] bool is_connected() const;

private:
    BusConnection connection_;
    std::chrono::milliseconds patience_;
};

} // namespace simulator
