#include "support/road.h"

#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::string content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

class NoRelay : public Road {};

TEST_F(NoRelay, SaysSoAndCanBePressedAgain) {
    open_application();
    enter("Start TX Test");
    for (long times = 1; times <= 2; ++times) {
        operator_.press("Return");
        operator_.wait_for("Failed to start child process"); // looks on while the application is busy
        expect_soon("the failure", [&] { return log_.count("> Failed to start child process") == times; });
        EXPECT_THAT(station::running_processes({"cpcd", "socat", "zigbeed"}), ElementsAre("cpcd"));
        if (const auto focused = operator_.focused();
            !focused || focused->name != "Failed to start child process")
            go("Down", "Failed to start child process");
    }
    EXPECT_EQ(log_.count("> waiting /opt/"), 60);
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(content("/tmp/iot_test_result"), IsEmpty()); // no report: the module is there
    go_to_header("TX Test");
    enter("Start TX Test"); // a fresh start page
}

class WrongSpeed : public Road {};

TEST_F(WrongSpeed, WaitsForAModuleThatNeverAnswers) {
    open_application();
    go("Right", "RX Test");
    enter("Start RX Test");
    operator_.press("Return");
    expect_soon("the radio stack", [this] { return log_.count("> Please Wait...") == 1; });
    operator_.wait_for("Please Wait...");
    std::this_thread::sleep_for(4s);
    EXPECT_TRUE(operator_.screen().shows("Please Wait..."));
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(station::running_processes({"cpcd", "socat", "zigbeed"}), SizeIs(3));
    go_to_header("TX Test"); // the page can still be left
    enter("Start TX Test");
}

class NoSerial : public Road {};

TEST_F(NoSerial, EndsByItselfAndLeavesTheReport) {
    open_application();
    enter("Start TX Test");
    operator_.press("Return");
    const auto pressed = steady_clock::now();
    expect_orderly_end();
    EXPECT_GE(steady_clock::now() - pressed, 3s);
    EXPECT_LT(steady_clock::now() - pressed, 6s);
    EXPECT_EQ(log_.count("> waiting /dev/ttyIOT"), 30);
    EXPECT_EQ(content("/opt/data/BM/EW/result/iot_test_bin_result"), "Fail to connect /dev/ttyIOT");
    EXPECT_EQ(content("/tmp/iot_test_result"), "FAIL");
    EXPECT_EQ(content("/tmp/iot_factory_data"), "FAIL");
    struct stat status {};
    ASSERT_EQ(stat("/tmp/iot_factory_data", &status), 0);
    if (geteuid() == 0) {
        EXPECT_EQ(status.st_uid, 5001);
        EXPECT_EQ(status.st_gid, 100);
    }
}
