/** The fixture of the end-to-end tests: the application on its own television, with keys and a screen reader. */
#pragma once

#include "base/bus.h"
#include "base/process.h"
#include "support/application_log.h"
#include "support/processes.h"
#include "support/television.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <optional>

/** Time-out for a hang, long enough for a busy machine. */
inline constexpr std::chrono::minutes busy_machine_limit{2};

/** Starts the application and shuts it down. Steps throw simulator::Failure if the screen does not react in time. */
class EndToEndTest : public testing::Test {
protected:
    EndToEndTest() { std::filesystem::remove(log_.path()); } // left by an earlier run
    /** Starts the application and waits for its first page. */
    void open_application();
    /** Starts the application and opens the test page whose first button is this one. */
    void open_test(const std::string& tab, const std::string& first_button);

    /** Presses a key; "Right*3" presses it three times. */
    void press(const char* key) const;
    /** Presses a widget through its accessible action, once it is displayed. */
    void activate(const std::string& name) const;
    /** Presses Return and waits for the focus on `name`. */
    void enter(const std::string& name) const;
    void wait_for(const std::string& text) const { wait("Wait", text); }
    void wait_for_focus(const std::string& name) const { wait("WaitFocus", name); }
    [[nodiscard]] bool shows(const std::string& text) const;

    [[nodiscard]] simulator::Process& application() { return *application_; }

    /** Expects exactly these new calls to the NCP host. */
    void expect_calls(const std::vector<std::string>& calls);
    /** Waits for a condition that is not visible on the screen. @throws simulator::Failure. */
    static void expect_soon(const std::string& what, const std::function<bool()>& condition);
    /** Waits for the application's exit: status 0, and no radio program running except the survivors. */
    void expect_clean_exit(const std::vector<std::string>& survivors = {});

    void TearDown() override;

    // A private connection, so that losing it does not exit the test.
    const simulator::Client television_{simulator::connect_to_bus(g_getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
    simulator::ApplicationLog log_;

private:
    void wait(const char* method, const std::string& name) const;

    std::optional<simulator::Process> application_;
    std::size_t calls_seen_ = 0;
};
