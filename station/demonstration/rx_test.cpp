#include "session.h"

namespace station {
namespace {

void set_channel(Session& session) {
    session.open_picker("Zigbee TX Channel", 11);
    session.step(session.onward(), 9, 20);
    session.page("rx-channel-picker");
    session.choose("Zigbee TX Channel", 20);
    session.expect_asked("ember_set_channel(20)");
}

void count(Session& session) {
    session.go("Up", "Count Received Packets");
    session.press_for_number("Return", "Received Packets: ");
    session.expect_asked("ember_get_rx_statistics()");
    session.page("rx-count");
    session.go("Down", "Reset Count");
    session.press("Return", "Reset Count");
    session.expect_asked("ember_reset_rx_statistics()");
    session.see("Received Packets: 0");
}

} // namespace

void do_rx_test(Session& session) {
    session.go_to_header("RX Test");
    session.press("Return", "Start RX Test");
    session.page("rx-start");
    session.press("Return", "11");
    session.expect_asked("ember_start(1)");
    session.see("Received Packets: ?");
    session.page("rx-page");
    set_channel(session);
    count(session);
    session.go("Down", "Stop");
    session.press("Return", "Start RX Test");
    session.expect_asked("ember_stop()");
}

} // namespace station
