#include "end_to_end_test.h"
#include "support/sync_reader.h"
#include "support/windows.h"

#include <csignal>
#include <cstdlib>
#include <thread>

using namespace std::chrono_literals;

class LifecycleTest : public EndToEndTest {
protected:
    [[nodiscard]] bool radio_sends() const {
        return simulator::radio_state(television_).find("'stream': <true>") != std::string::npos;
    }

    /** Launches the application, starts the TX test, which must end any earlier stream, and starts a stream. */
    void open_stream() {
        open_test("TX Test", "Set Power");
        EXPECT_FALSE(radio_sends());
        activate("Start Stream");
        wait_for("Stop Stream");
        EXPECT_TRUE(radio_sends());
    }

    [[nodiscard]] long context_switches() const {
        long sum = 0;
        const auto tasks = "/proc/" + std::to_string(application_->id()) + "/task";
        for (const auto& task : std::filesystem::directory_iterator(tasks))
            sum += simulator::sum_of(task.path() / "status",
                                     {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
        return sum;
    }
    /** Passes if one of three periods has at most two context switches; a busy machine causes extra ones. */
    void expect_idle() const {
        const auto is_idle = [this] {
            std::this_thread::sleep_for(1s);
            const long before = context_switches();
            std::this_thread::sleep_for(3s);
            return context_switches() - before <= 2;
        };
        EXPECT_TRUE(is_idle() || is_idle() || is_idle());
    }
};

TEST_F(LifecycleTest, IdleApplicationSleepsWithAndWithoutAScreenReader) {
    application_ = launch();
    expect_logged("> _app_service");
    for (int step = 0; step < 2; ++step) { // looking at the screen would announce a screen reader
        std::this_thread::sleep_for(1s);
        press("OK");
    }
    expect_logged("method = ember_start,");
    expect_idle();
    wait_for_focus("Set Power");
    expect_idle();
    const simulator::OtherWindow in_front;
    expect_logged("> _app_pause");
    press("Red");
    expect_logged("> _app_resume");
}

TEST_F(LifecycleTest, SecondLaunchDoesNotWaitForTheBusyApplication) {
    open_test("TX Test", "Set Power");
    set_host_behaviour(television_, "ember_start_stream", "late 8000");
    activate("Start Stream");
    expect_logged("method = ember_start_stream,");
    EXPECT_EQ(launch()->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(log_.count("> _app_service"), 1);
    expect_logged("> _app_service", 2);
}

TEST_F(LifecycleTest, LateSessionBusIsUsedOnceItAnswers) {
    ASSERT_EQ(std::system("pkill -STOP -f [s]ession.*--address"), 0);
    application_ = launch();
    expect_logged("> _app_service");
    const auto second = launch();
    expect_logged("> _app_service", 2);
    ASSERT_EQ(std::system("pkill -CONT -f [s]ession.*--address"), 0);
    expect_logged("is also running");
    second->terminate();
    EXPECT_EQ(second->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(launch()->wait_for_end(busy_machine_limit), 0);
    expect_logged("> _app_service", 3);
    wait_for("TX Test");
}

TEST_F(LifecycleTest, OfTwoLaunchesDuringShutdownOneStartsAfterwards) {
    open_test("TX Test", "Set Power");
    ASSERT_EQ(std::system("killall -STOP cpcd zigbeed"), 0); // to make the shutdown slow
    application_->terminate();
    expect_logged("> the main loop ends");
    const auto second = launch();
    const auto third = launch();
    expect_logged("is shutting down: waiting", 2);
    EXPECT_EQ(log_.count("> app create called"), 1);
    std::system("killall -CONT cpcd zigbeed");
    expect_clean_exit();
    expect_logged("> _app_service", 3);
    EXPECT_EQ(log_.count("> app create called"), 2);
    expect_soon("one to end", [&] { return second->id() == 0 || third->id() == 0; });
    (second->id() == 0 ? third : second)->terminate();
    EXPECT_EQ(second->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(third->wait_for_end(busy_machine_limit), 0);
}

TEST_F(LifecycleTest, RelaunchAfterAKillRestartsTheRadioAndReportsAMissingDevice) {
    open_stream();
    application_->send_signal(SIGKILL);
    ASSERT_EQ(application_->wait_for_end(busy_machine_limit), 128 + SIGKILL);
    open_stream();
    television_.call(simulator::radio_module, "SetSerial", g_variant_new("(b)", FALSE));
    activate("TX Test");
    wait_for_focus("Start TX Test");
    press("Return");
    expect_clean_exit();
    EXPECT_FALSE(radio_sends());
    EXPECT_EQ(log_.count("> path[/tmp/iot_test_result], data[FAIL]"), 1);
}

TEST_F(LifecycleTest, LostSystemBusFailsCommandsAndExitShutsDownCleanly) {
    simulator::SyncReader reader; // the television's own reader needs the system bus
    const auto see = [&](const std::string& text) {
        simulator::Screen screen({});
        expect_soon(text, [&] { return (screen = reader.read("velmora")).shows(text); });
        return *screen.find(text);
    };
    open_test("RX Test", "11");
    ASSERT_EQ(std::system("pkill -f [d]bus-daemon.*system_bus.conf"), 0);
    expect_logged("bus connection was closed");
    reader.activate(see("Reset Count"));
    see("Received Packets: Reset Failed");
    reader.activate(see("Exit"));
    reader.activate(see("Yes"));
    expect_clean_exit();
}

TEST_F(LifecycleTest, LostSessionBusDoesNotStopTheApplication) {
    open_application();
    ASSERT_EQ(std::system("pkill -KILL -f [s]ession.*--address"), 0);
    EXPECT_EQ(application_->wait_for_end(1s), std::nullopt);
}
