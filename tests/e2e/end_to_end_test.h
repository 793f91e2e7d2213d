/** The fixture of the end-to-end tests: the application on its own television, with keys and a screen reader. */
#pragma once

#include "base/bus.h"
#include "base/process.h"
#include "base/wait_until.h"
#include "support/application_log.h"
#include "support/processes.h"
#include "support/television.h"

#include <filesystem>
#include <gmock/gmock.h>

/** A longer wait counts as a hang, even on a busy machine. */
inline constexpr std::chrono::minutes busy_machine_limit{5};

/** Starts the application and shuts it down. Steps throw simulator::Failure if the screen does not react in time. */
class EndToEndTest : public testing::Test {
protected:
    EndToEndTest() { std::filesystem::remove(log_.path()); } // left by an earlier run

    /** Launches the application; all launches write to the same log. */
    [[nodiscard]] std::unique_ptr<simulator::Process> launch() const {
        return std::make_unique<simulator::Process>(std::vector<std::string>{VELMORA_PROGRAM},
                                                    simulator::written_to(log_.path()));
    }
    /** Launches the application and waits for its first page. */
    void open_application() {
        application_ = launch();
        wait_for_focus("TX Test");
    }
    /** Launches the application and starts a test; the focus must then be on `focused_button`. */
    void open_test(const std::string& tab, const std::string& focused_button) {
        open_application();
        activate(tab);
        wait_for_focus("Start " + tab);
        enter(focused_button);
    }

    /** Presses a key; "Right*3" presses Right three times. */
    void press(const char* key) const {
        television_.call(simulator::ui, "Press", g_variant_new_parsed("([%s],)", key));
    }
    /** Waits until a widget is displayed, and presses it through its accessible action. */
    void activate(const std::string& name) const {
        wait_for(name);
        television_.call(simulator::ui, "Activate", g_variant_new("(s)", name.c_str()));
    }
    /** Presses Return and waits for the focus on `name`. */
    void enter(const std::string& name) const {
        press("Return");
        wait_for_focus(name);
    }
    void wait_for(const std::string& text, const char* method = "Wait") const {
        constexpr std::chrono::milliseconds limit = busy_machine_limit;
        television_.call(simulator::ui, method,
                         g_variant_new("(su)", text.c_str(), static_cast<guint32>(limit.count())));
    }
    void wait_for_focus(const std::string& name) const { wait_for(name, "WaitFocus"); }

    /** Waits for a condition that is not visible on the screen. @throws simulator::Failure. */
    static void expect_soon(const std::string& what, const std::function<bool()>& condition) {
        if (!simulator::wait_until(condition, busy_machine_limit))
            throw simulator::Failure("waited for " + what);
    }
    /** Waits until exactly this many messages contain a text. */
    void expect_logged(const std::string& text, long times = 1) const {
        expect_soon(text, [&] { return log_.count(text) == times; });
    }
    /** Waits for the application to exit; expects status 0, and that no radio program is running. */
    void expect_clean_exit() const {
        EXPECT_EQ(application_->wait_for_end(busy_machine_limit), 0);
        EXPECT_THAT(simulator::running_radio_programs(), testing::IsEmpty());
        // The exited children are reaped asynchronously, by init or by a later launch.
        expect_soon("all zombies to be reaped", [] { return simulator::zombies().empty(); });
    }

    void TearDown() override {
        if (HasFailure()) {
            EXPECT_NO_THROW(simulator::take_picture("/var/log/simulator/last_picture.png"));
        }
        if (application_ && application_->id() != 0) {
            application_->terminate();
            expect_clean_exit();
        }
        EXPECT_THAT(log_.library_warnings(), testing::IsEmpty());
    }

    // A private connection, because losing the shared one would exit the test.
    const simulator::Client television_{simulator::connect_to_bus(g_getenv("DBUS_SYSTEM_BUS_ADDRESS"))};
    simulator::ApplicationLog log_;
    std::unique_ptr<simulator::Process> application_;
};
