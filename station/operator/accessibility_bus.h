/** Questions to what is on the accessibility bus. */
#pragma once

#include "screen.h"

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>

struct _GDBusConnection;
struct _GMainContext;
struct _GVariant;

namespace station {

/** The application did not answer, or what was asked has gone. */
class LostSight : public std::runtime_error {
public:
    LostSight(const std::string& message, bool is_late) : std::runtime_error(message), is_late_(is_late) {}
    /** Nothing was answered in time. */
    [[nodiscard]] bool is_late() const { return is_late_; }

private:
    bool is_late_;
};

class AccessibilityBus {
public:
    struct Question {
        Accessible whom;
        const char* interface;
        const char* method;
        _GVariant* arguments;    /**< a floating tuple, or null for none */
        const char* answer_type; /**< the type of the answer's tuple */
    };
    /** Takes the values of an answer. */
    using Taker = std::function<void(_GVariant* answer)>;

    /** Connects, and says that a screen reader is there. @throws std::runtime_error. */
    explicit AccessibilityBus(std::chrono::milliseconds patience);

    /** Several questions that are under way at the same time, so that they cost little more than one. */
    class Questions {
    public:
        explicit Questions(const AccessibilityBus& bus);
        ~Questions();
        Questions(const Questions&) = delete;
        Questions& operator=(const Questions&) = delete;

        /**
         * @param question whom, and what; its arguments are consumed.
         * @param taker    is handed the answer by `take_answers`.
         */
        void ask(const Question& question, Taker taker);
        /** Waits for the answers and hands them out in the order of the questions. @throws LostSight when one
         * did not come. */
        void take_answers();

    private:
        struct Asked;
        void wait_for_answers();

        const AccessibilityBus& bus_;
        _GMainContext* context_;
        int open_ = 0;
        std::list<Asked> asked_;
    };

    /** One question. @throws LostSight. */
    void ask(const Question& question, const Taker& taker) const;

    [[nodiscard]] bool is_connected() const;

private:
    struct Release {
        void operator()(_GDBusConnection* connection) const;
    };
    std::unique_ptr<_GDBusConnection, Release> connection_;
    std::chrono::milliseconds patience_;
};

} // namespace station
