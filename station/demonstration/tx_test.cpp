#include "session.h"

namespace station {
namespace {

void set_power(Session& session) {
    session.open_picker("Zigbee TX Power", 0);
    session.page("tx-power-picker"); // at its limit
    session.step(session.onward(), 7, 7);
    session.choose("Zigbee TX Power", 7);
    session.expect_asked("ember_set_power(7)");
}

void set_channel(Session& session) {
    session.go("Down", "Set Channel");
    session.open_picker("Zigbee TX Channel", 11);
    session.step(session.onward(), 5, 16);
    session.step(session.backward(), 1, 15);
    session.page("tx-channel-picker");
    session.choose("Zigbee TX Channel", 15);
    session.expect_asked("ember_set_channel(15)");
    session.page("tx-values");
}

void stream(Session& session) {
    session.go("Down", "Start Stream");
    session.press("Return", "Stop Stream");
    session.expect_asked("ember_start_stream()");
    session.expect_focusable("7", false);
    session.expect_focusable("15", false);
    session.page("tx-streaming");
    session.press("Return", "Start Stream");
    session.expect_asked("ember_stop_stream()");
    session.expect_focusable("7", true);
    session.expect_focusable("15", true);
}

} // namespace

void do_tx_test(Session& session) {
    session.press("Return", "Start TX Test");
    session.page("tx-start");
    session.press("Return", "Set Power");
    session.expect_asked("ember_start(0)");
    session.page("tx-page");
    set_power(session);
    set_channel(session);
    stream(session);
    session.go("Down", "Stop Test");
    session.press("Return", "Start TX Test");
    session.expect_asked("ember_stop()");
}

} // namespace station
