#include "end_to_end_test.h"
#include "support/sync_reader.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace std::chrono_literals;

class LifecycleTest : public EndToEndTest {
protected:
    /** Launches the application again, with the same log. */
    [[nodiscard]] std::unique_ptr<simulator::Process> launch() const {
        return std::make_unique<simulator::Process>(std::vector<std::string>{VELMORA_PROGRAM},
                                                    simulator::written_to(log_.path()));
    }

    void expect_logged(const std::string& text, long times = 1) const {
        expect_soon(text, [&] { return log_.count(text) == times; });
    }

    [[nodiscard]] bool radio_sends() const {
        return simulator::radio_state(television_).find("'stream': <true>") != std::string::npos;
    }

    void open_stream() {
        open_test("TX Test", "Set Power");
        EXPECT_FALSE(radio_sends());
        activate("Start Stream");
        wait_for("Stop Stream");
        EXPECT_TRUE(radio_sends());
    }
};

TEST_F(LifecycleTest, LaunchDoesNotWaitForABusyProcess) {
    open_test("TX Test", "Set Power");
    set_host_behaviour(television_, "ember_start_stream", "late 8000");
    activate("Start Stream");
    expect_calls({"ember_start(0)", "ember_start_stream()"});
    EXPECT_EQ(launch()->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(log_.count("> _app_service"), 1);
    expect_logged("> _app_service", 2);
}

TEST_F(LifecycleTest, LateSessionBusIsUsedOnceItAnswers) {
    const auto signal_bus = [](const std::string& signal) {
        return std::system(("pkill -" + signal + " -f [s]ession.*--address").c_str());
    };
    ASSERT_EQ(signal_bus("STOP"), 0);
    const auto first = launch();
    expect_logged("> _app_service");
    EXPECT_EQ(log_.count("> the session bus does not answer"), 1);
    const auto second = launch();
    expect_logged("> _app_service", 2);
    ASSERT_EQ(signal_bus("CONT"), 0);
    expect_logged("is also running");
    second->terminate();
    EXPECT_EQ(second->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(launch()->wait_for_end(busy_machine_limit), 0);
    expect_logged("> _app_service", 3);
    wait_for("TX Test");
    first->terminate();
    EXPECT_EQ(first->wait_for_end(busy_machine_limit), 0);
}

TEST_F(LifecycleTest, OneLaunchDuringShutdownStartsAfterwards) {
    open_test("TX Test", "Set Power");
    ASSERT_EQ(std::system("killall -STOP cpcd zigbeed"), 0); // to make the shutdown slow
    application().terminate();
    expect_logged("> the main loop ends");
    const auto second = launch();
    const auto third = launch();
    expect_logged("is shutting down: waiting", 2);
    EXPECT_EQ(log_.count("> app create called"), 1);
    expect_clean_exit({"cpcd", "zigbeed"});
    std::system("killall -CONT cpcd zigbeed");
    expect_logged("> _app_service", 3);
    EXPECT_EQ(log_.count("> app create called"), 2);
    expect_soon("one to end", [&] { return second->number() == 0 || third->number() == 0; });
    for (const auto& each : {second.get(), third.get()})
        if (each->number() != 0)
            each->terminate();
    EXPECT_EQ(second->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(third->wait_for_end(busy_machine_limit), 0);
}

TEST_F(LifecycleTest, RelaunchAfterAKillRestartsTheRadioAndReportsAMissingDevice) {
    open_stream();
    application().send_signal(SIGKILL);
    ASSERT_EQ(application().wait_for_end(busy_machine_limit), 128 + SIGKILL);
    open_stream();
    television_.call(simulator::radio_module, "SetSerial", g_variant_new("(b)", FALSE));
    activate("TX Test");
    wait_for_focus("Start TX Test");
    press("Return");
    expect_clean_exit();
    EXPECT_FALSE(radio_sends());
    std::string result;
    std::ifstream("/tmp/iot_test_result") >> result;
    EXPECT_EQ(result, "FAIL");
}

TEST_F(LifecycleTest, SigtermWhileTheRadioStartsShutsDownCleanly) {
    std::filesystem::remove(
        "/opt/usr/apps/com.kelsor.tv.brimhub/bin/socat"); // to make the start wait for the relay
    open_application();
    enter("Start TX Test");
    press("Return");
    expect_logged("app name", 2);
    application().terminate();
    expect_clean_exit();
    EXPECT_EQ(log_.count("> the main loop ends: SIGTERM"), 1);
    EXPECT_EQ(log_.count("> stop ncp requester"), 1);
}

TEST_F(LifecycleTest, LostSystemBusFailsCommandsAndExitShutsDownCleanly) {
    simulator::SyncReader reader; // the television's own reader needs this bus
    simulator::Screen screen({});
    const auto see = [&](const std::string& text) {
        expect_soon(text, [&] { return (screen = reader.read("velmora")).shows(text); });
    };
    open_test("RX Test", "11");
    ASSERT_EQ(std::system("pkill -f [d]bus-daemon.*system_bus.conf"), 0);
    expect_logged("bus connection was closed");
    for (const char* const button : {"Reset Count", "Exit", "Yes"}) {
        see(button);
        reader.activate(*screen.find(button));
        if (button == std::string("Reset Count"))
            see("Received Packets: Reset Failed");
    }
    expect_clean_exit();
    EXPECT_EQ(log_.count("> the main loop ends: the application asked to"), 1);
}

TEST_F(LifecycleTest, LostSessionBusDoesNotStopTheApplication) {
    open_application();
    ASSERT_EQ(std::system("pkill -KILL -f [s]ession.*--address"), 0);
    EXPECT_EQ(application().wait_for_end(1s), std::nullopt);
}
