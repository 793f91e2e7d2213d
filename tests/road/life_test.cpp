#include "support/road.h"

#include <cstdlib>

using namespace std::chrono_literals;

class LifeRoad : public Road {};

TEST_F(LifeRoad, EndsInOrderOnSigtermWhileTheStackComesUp) {
    open_application();
    enter("Start TX Test");
    operator_.press("Return");
    expect_soon("the relay's start", [this] { return log_.count("app name") >= 2; });
    application().terminate();
    expect_orderly_end();
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
    EXPECT_EQ(log_.count("> the main loop ends: the operator chose to exit"), 1);
}

TEST_F(LifeRoad, LivesOnWithoutTheScreenReadersBusAndEndsInOrder) {
    open_application();
    ASSERT_EQ(std::system("pkill -KILL -f [s]ession.*--address"), 0);
    EXPECT_EQ(application().wait_for_end(1s), std::nullopt);
    application().terminate();
    expect_orderly_end();
}
