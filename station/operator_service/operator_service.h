/** Answers the calls to the operator. See contract.h. */
#pragma once

#include "common/bus_object.h"
#include "common/main_loop.h"
#include "jobs.h"
#include "operator/condition.h"
#include "operator/display.h"
#include "screen_watch.h"

#include <chrono>
#include <string>

namespace station {

/** Keys are pressed in the thread of the calls, which never waits: not for the screen, whose reader has the
 * main loop, nor for held keys and pictures, which have threads of their own. */
class OperatorService {
public:
    /** @throws std::runtime_error without a display. */
    explicit OperatorService(GDBusConnection* connection);
    ~OperatorService();
    OperatorService(const OperatorService&) = delete;
    OperatorService& operator=(const OperatorService&) = delete;

private:
    using Answer = std::function<GVariant*(const Screen&)>;

    void follow_leavers();
    void handle_call(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
    void press(GVariant* arguments, GDBusMethodInvocation* invocation);
    void hold(GVariant* arguments, GDBusMethodInvocation* invocation);
    void take_picture(GDBusMethodInvocation* invocation);
    void check_key(const std::string& key) const;
    /** Answers once the condition is met, or with NotSeen. */
    void answer_when(const Condition& condition, std::chrono::milliseconds patience, const Answer& answer,
                     GDBusMethodInvocation* invocation);
    void wait(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);

    GDBusConnection* connection_;
    Display display_;
    ScreenWatch watch_;
    Jobs jobs_;
    LoopThread thread_;
    std::unique_ptr<BusObject> object_;
    guint leavers_ = 0;
};

} // namespace station
