// Two televisions that share an air, each with an operator of its own; `air` starts both.
#include "support/road.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

/** The operators call to each other through a folder that both televisions see. */
class AirRoad : public Road {
protected:
    static void call(const std::string& word) { std::ofstream(meeting_place() / word); }
    static void wait_for_call(const std::string& word) {
        expect_soon("the other operator's '" + word + "'",
                    [path = meeting_place() / word] { return std::filesystem::exists(path); });
    }

private:
    static std::filesystem::path meeting_place() { return std::getenv("MEETING_PLACE"); }
};

TEST_F(AirRoad, Transmits) {
    open_tx_test();
    go("Down", "Set Channel");
    open_picker(channel_picker, 11, 15);
    choose(channel_picker, 15);
    go("Down", "Start Stream");
    wait_for_call("listening");
    enter("Stop Stream");
    call("streaming");
    wait_for_call("heard");
    enter("Start Stream");
    call("silent");
}

TEST_F(AirRoad, Receives) {
    open_rx_test();
    open_picker(channel_picker, 11, 15);
    choose(channel_picker, 15);
    go("Up", "Count Received Packets");
    EXPECT_EQ(count_until([](long) { return true; }), 0);
    call("listening");
    wait_for_call("streaming");
    const long first = count_until([](long packets) { return packets > 0; });
    count_until([first](long packets) { return packets > first; });
    call("heard");
    wait_for_call("silent");
    const auto received = std::stol(radio("received"));
    EXPECT_EQ(count_until([received](long packets) { return packets == received; }), received);
    EXPECT_EQ(std::stol(radio("received")), received);
}

} // namespace
