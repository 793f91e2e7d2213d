/** A person before the television who uses the application; each test is one sitting. */
#pragma once

#include "base/process.h"
#include "support/application_log.h"
#include "support/operator.h"
#include "support/processes.h"
#include "support/television.h"

#include <chrono>
#include <functional>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <vector>

/** Ends a hang; a machine with many busy processes takes its time. */
inline constexpr std::chrono::minutes busy_machine_limit{2};

/** Runs the application and ends it again. */
class Road : public testing::Test {
protected:
    /** Starts the application and waits for its first page. */
    void open_application();
    /** From there into the test page with this first button. */
    void open_test(const std::string& tab, const std::string& first_button);
    /** Presses Return and waits until the focus is on `name`; throws NotSeen when it does not come. */
    void enter(const std::string& name);

    [[nodiscard]] simulator::Process& application() { return *application_; }

    /** The NCP host was asked this, and nothing else, since the last time. */
    void expect_asked(const std::vector<std::string>& calls);
    /** Waits for something that the screen does not show; throws NotSeen when it does not come. */
    static void expect_soon(const std::string& what, const std::function<bool()>& has_come);
    /** Waits for the application's end: status 0, and nothing of the radio stack left but the survivors. */
    void expect_orderly_end(const std::vector<std::string>& survivors = {});

    void TearDown() override;

    simulator::Operator operator_{"velmora", busy_machine_limit};
    simulator::ApplicationLog log_;

private:
    std::optional<simulator::Process> application_;
    std::size_t calls_seen_ = 0;
};
