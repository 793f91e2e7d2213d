#include "support/front_window.h"
#include "support/road.h"

#include <cstdlib>
#include <fstream>

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::SizeIs;

class LifeRoad : public Road {};

TEST_F(LifeRoad, EndsInOrderOnSigtermDuringATest) {
    open_tx_test();
    go("Down", "Start Stream");
    enter("Stop Stream");
    application().terminate();
    expect_orderly_end();
    EXPECT_EQ(log_.count("> the main loop ends: SIGTERM"), 1);
    EXPECT_THAT(log_.messages().back(), EndsWith("Command [pgrep -c cpcd] result : 0"));
}

TEST_F(LifeRoad, EndsInOrderWhenTheWindowIsClosedDuringATest) {
    open_rx_test();
    close_front_window();
    expect_orderly_end();
    EXPECT_EQ(log_.count("> the main loop ends: the window was closed"), 1);
    EXPECT_EQ(log_.count("> stop ncp requester"), 1);
}

TEST_F(LifeRoad, EndsInOrderOnSigtermWhileTheStackComesUp) {
    open_application();
    enter("Start TX Test");
    operator_.press("Return");
    expect_soon("the relay's start", [this] { return log_.count("app name") >= 2; });
    application().terminate();
    expect_orderly_end();
    EXPECT_EQ(log_.count("> stop ncp requester"), 1);
}

TEST_F(LifeRoad, ASecondLaunchReachesTheFirstAndEnds) {
    open_tx_test();
    const auto page = operator_.texts();
    station::Process second({VELMORA_PROGRAM}, station::written_to("/tmp/second.log"));
    EXPECT_EQ(second.wait_for_end(3s), 0);
    expect_soon("the second launch", [this] { return log_.count("> _app_service") == 2; });
    EXPECT_EQ(operator_.texts(), page);
    EXPECT_THAT(station::running_processes({"cpcd", "socat", "zigbeed"}), SizeIs(3));
    EXPECT_THAT(station::command_lines("velmora"), SizeIs(1));
}

/** On a television of its own, whose system bus ends. */
class SystemBusRoad : public Road {};

TEST_F(SystemBusRoad, APageWhoseBusHasGoneSaysWhatFailedAndEndsInOrder) {
    open_rx_test();
    go("Up", "Reset Count");
    ASSERT_EQ(std::system("pkill -f [d]bus-daemon.*system_bus.conf"), 0);
    expect_soon("the word about the bus", [this] { return log_.count("bus connection was closed") == 1; });
    operator_.press("Return");
    operator_.wait_for("Received Packets: Reset Failed");
    go_to_header("Exit");
    enter("Cancel");
    go("Left", "Yes");
    operator_.press("Return");
    expect_orderly_end();
    EXPECT_EQ(log_.count("> the main loop ends: the operator chose to exit"), 1);
}

/** On another, whose session bus ends. */
class SessionBusRoad : public Road {};

TEST_F(SessionBusRoad, LivesOnWithoutTheScreenReadersBusAndEndsInOrder) {
    open_application();
    ASSERT_EQ(std::system("pkill -KILL -f [s]ession.*--address"), 0);
    EXPECT_EQ(application().wait_for_end(1s), std::nullopt);
    application().terminate();
    expect_orderly_end();
}

/** With a module of firmware 7.4.9, whose serial speed is the fast one. */
class StoredVersionRoad : public Road {};

TEST_F(StoredVersionRoad, DecidesInTheNextRunWhateverTheImageSaysThen) {
    open_tx_test();
    application().terminate();
    expect_orderly_end();
    const std::string folder = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/";
    std::ofstream(folder + "xqZigbeeRcp-mfg") << "firmware\1\2\3\4\5\6\7\10";
    open_tx_test();
    EXPECT_THAT(station::command_lines("cpcd"),
                ElementsAre(folder + "cpcd --conf=" + folder + "cpcd_921600.conf"));
    EXPECT_EQ(log_.count("> stored ver[7.4.9]"), 1);
    EXPECT_EQ(log_.count("> fw_ver : "), 0); // no image is read
}
