/** Questions to what is on the accessibility bus. Nothing here waits: answers come from the main loop. */
#pragma once

#include "base/owned.h"
#include "screen.h"

#include <chrono>
#include <functional>

namespace simulator {

struct Question {
    Accessible whom;
    const char* interface;
    const char* method;
    GVariant* arguments;                        /**< a floating tuple, or null for none */
    const char* answer_type;                    /**< the type of the answer's tuple */
    std::function<void(GVariant* answer)> take; /**< takes the values of the answer */
};

/** Why a question has no answer. */
struct Unanswered {
    std::string reason;
    bool is_late = false; /**< nothing was answered in time */
};

/** Its connection is made, and a screen reader announced, by the first question. */
class AccessibilityBus {
public:
    using Done = std::function<void(const std::optional<Unanswered>& failure)>;

    /** @param patience for the answer to a question. */
    explicit AccessibilityBus(std::chrono::milliseconds patience);
    /** Nothing is taken and nobody called any more. */
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /** Connects unless it is connected, and announces a screen reader. */
    void connect(const Done& done);

    /**
     * Asks several questions at the same time, so that they cost little more than one; their arguments are consumed.
     *
     * @param done called when all are answered, or with the first failure.
     */
    void ask(const std::vector<Question>& questions, const Done& done);

private:
    using Answered = std::function<void(GVariant* answer, const GError* error)>;

    void call(GDBusConnection* bus, const Question& question, const Answered& answered);
    void open(const std::string& address, const std::function<void(BusConnection, const GError*)>& opened);
    void announce(const Done& done);

    std::chrono::milliseconds patience_;
    Object<GCancellable> cancel_;
    BusConnection session_;
    BusConnection connection_;
};

} // namespace simulator
