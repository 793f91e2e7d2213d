#include "support/road.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace std::chrono_literals;
using simulator::this_television;

class LifeRoad : public Road {
protected:
    /** Another launch, whose words go to the same log. */
    [[nodiscard]] std::unique_ptr<simulator::Process> launch() const {
        return std::make_unique<simulator::Process>(std::vector<std::string>{VELMORA_PROGRAM},
                                                    simulator::written_to(log_.path()));
    }

    [[nodiscard]] static bool radio_sends() { return simulator::radio_state(this_television()).streams; }

    void open_stream() {
        open_test("TX Test", "Set Power");
        EXPECT_FALSE(radio_sends());
        operator_.activate("Start Stream");
        operator_.wait_for("Stop Stream");
        EXPECT_TRUE(radio_sends());
    }
};

TEST_F(LifeRoad, LaunchDoesNotWaitForABusyProcess) {
    open_test("TX Test", "Set Power");
    let_host_answer(this_television(), "ember_start_stream", "late 8000");
    operator_.activate("Start Stream");
    expect_asked({"ember_start(0)", "ember_start_stream()"});
    EXPECT_EQ(launch()->wait_for_end(busy_machine_limit), 0);
    EXPECT_EQ(log_.count("> _app_service"), 1);
    expect_soon("the busy process's word", [this] { return log_.count("> _app_service") == 2; });
}

TEST_F(LifeRoad, SessionBusThatIsLateIsUsedWhenItComes) {
    const auto signal_bus = [](const std::string& signal) {
        return std::system(("pkill -" + signal + " -f [s]ession.*--address").c_str());
    };
    std::filesystem::remove(log_.path()); // of an earlier test
    ASSERT_EQ(signal_bus("STOP"), 0);
    const auto first = launch();
    expect_soon("the start without it", [this] { return log_.count("> _app_service") == 1; });
    EXPECT_EQ(log_.count("> the session bus does not answer"), 1);
    const auto second = launch();
    expect_soon("a second start without it", [this] { return log_.count("> _app_service") == 2; });
    ASSERT_EQ(signal_bus("CONT"), 0);
    expect_soon("the word about two", [this] { return log_.count("runs as well") == 1; });
    second->terminate();
    EXPECT_EQ(second->wait_for_end(10s), 0);
    EXPECT_EQ(launch()->wait_for_end(1500ms), 0);
    expect_soon("a launch to reach it", [this] { return log_.count("> _app_service") == 3; });
    operator_.wait_for("TX Test");
    first->terminate();
    EXPECT_EQ(first->wait_for_end(10s), 0);
}

TEST_F(LifeRoad, OneOfTheLaunchesDuringTheEndRunsAfterIt) {
    open_test("TX Test", "Set Power");
    ASSERT_EQ(std::system("killall -STOP cpcd zigbeed"), 0); // the end tries in vain to end them
    application().terminate();
    expect_soon("the end's begin", [this] { return log_.count("> the main loop ends") == 1; });
    const auto second = launch();
    const auto third = launch();
    expect_soon("both to wait", [this] { return log_.count("is ending: waiting") == 2; });
    EXPECT_EQ(log_.count("> app create called"), 1);
    expect_orderly_end({"cpcd", "zigbeed"});
    std::system("killall -CONT cpcd zigbeed");
    expect_soon("both launches", [this] { return log_.count("> _app_service") == 3; });
    EXPECT_EQ(log_.count("> app create called"), 2);
    expect_soon("one to end", [&] { return second->number() == 0 || third->number() == 0; });
    const bool second_runs = second->number() != 0;
    EXPECT_EQ((second_runs ? third : second)->wait_for_end(busy_machine_limit), 0);
    (second_runs ? second : third)->terminate();
    EXPECT_EQ((second_runs ? second : third)->wait_for_end(busy_machine_limit), 0);
}

TEST_F(LifeRoad, KilledInAStreamItBringsTheRadioUpAnewWhenItIsStartedAgain) {
    open_stream();
    application().send_signal(SIGKILL);
    ASSERT_EQ(application().wait_for_end(busy_machine_limit), 128 + SIGKILL);
    open_stream();
}

TEST_F(LifeRoad, WithoutTheDeviceASecondStartIsReportedAndEndsTheStream) {
    open_stream();
    this_television().call(simulator::radio_module, "SetSerial", g_variant_new("(b)", FALSE));
    operator_.activate("TX Test");
    operator_.wait_for_focus("Start TX Test");
    operator_.press("Return");
    expect_orderly_end();
    EXPECT_FALSE(radio_sends());
    std::string result;
    std::ifstream("/tmp/iot_test_result") >> result;
    EXPECT_EQ(result, "FAIL");
    this_television().call(simulator::radio_module, "SetSerial", g_variant_new("(b)", TRUE));
}

TEST_F(LifeRoad, EndsInOrderOnSigtermWhileTheStackComesUp) {
    const std::filesystem::path relay = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/socat";
    std::filesystem::rename(relay, relay.string() + ".away"); // so that it is waited for
    open_application();
    enter("Start TX Test");
    operator_.press("Return");
    expect_soon("the relay's start", [this] { return log_.count("app name") >= 2; });
    application().terminate();
    expect_orderly_end();
    std::filesystem::rename(relay.string() + ".away", relay);
    EXPECT_EQ(log_.count("> the main loop ends: SIGTERM"), 1);
    EXPECT_EQ(log_.count("> stop ncp requester"), 1);
}

TEST_F(LifeRoad, APageWhoseSystemBusHasGoneSaysWhatFailedAndEndsInOrder) {
    open_test("RX Test", "11");
    ASSERT_EQ(std::system("pkill -f [d]bus-daemon.*system_bus.conf"), 0);
    expect_soon("the word about the bus", [this] { return log_.count("bus connection was closed") == 1; });
    operator_.activate("Reset Count");
    operator_.wait_for("Received Packets: Reset Failed");
    operator_.activate("Exit");
    operator_.activate("Yes");
    expect_orderly_end();
    EXPECT_EQ(log_.count("> the main loop ends: the application asked to"), 1);
}

TEST_F(LifeRoad, LivesOnWithoutTheScreenReadersBusAndEndsInOrder) {
    open_application();
    ASSERT_EQ(std::system("pkill -KILL -f [s]ession.*--address"), 0);
    EXPECT_EQ(application().wait_for_end(1s), std::nullopt);
    application().terminate();
    expect_orderly_end();
}
