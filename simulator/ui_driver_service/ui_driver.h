/** Answers the calls to the ui_driver. */
#pragma once

#include "base/bus.h"
#include "base/main_loop.h"
#include "jobs.h"
#include "screen_watch.h"
#include "ui_driver/condition.h"
#include "ui_driver/keyboard.h"

#include <chrono>
#include <string>

namespace simulator {

/** Keys are pressed in the thread of the calls, which never waits: not for the screen, whose reader has the
 * main loop, nor for held keys and pictures, which have threads of their own. */
class UiDriver {
public:
    /** @throws std::runtime_error without a display. */
    explicit UiDriver(GDBusConnection* connection);
    ~UiDriver();
    UiDriver(const UiDriver&) = delete;
    UiDriver& operator=(const UiDriver&) = delete;

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

} // namespace simulator
