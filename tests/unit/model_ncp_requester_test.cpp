#include "model/ncp_requester.h"
#include "support/log_capture.h"
#include "support/scripted_service.h"
#include "support/usleep_replacement.h"

#include <gmock/gmock.h>

using testing::Contains;
using testing::ElementsAre;

// How many of the next attempts to connect to the bus will fail.
static int attempts_to_refuse = 0;

// Replaces GIO's function at link time (-Wl,--wrap=g_bus_get_sync).
extern "C" {
decltype(g_bus_get_sync) __real_g_bus_get_sync;
GDBusConnection* __wrap_g_bus_get_sync(GBusType type, GCancellable* cancellable, GError** error) {
    if (attempts_to_refuse == 0)
        return __real_g_bus_get_sync(type, cancellable, error);
    --attempts_to_refuse;
    g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, "unreachable");
    return nullptr;
}
}

namespace {

class NcpRequesterTest : public testing::Test, protected SleepRecorder {
protected:
    ~NcpRequesterTest() override { ncp_requester::destroyInstance(); }

    LogCapture log;
    ScriptedService service;
    ncp_requester& requester = ncp_requester::getInstance();
    Notes notes;
};

TEST_F(NcpRequesterTest, SecondStartIsIgnoredAndListenersHearNothingAfterStopOrDestruction) {
    const simulator::BusConnection shared = simulator::connect_to_system_bus(); // outlives the requester
    requester.register_callback(note<1>, &notes);
    requester.stop();
    EXPECT_EQ(log.messages().back(), "E ncp_requester.cpp: stop > Not yet Started");
    requester.start();
    requester.start();
    EXPECT_THAT(sleeps, ElementsAre(500'000)) << "only for the first start";
    service.emit("('ready',)");
    requester.stop();
    service.emit("('ready',)");
    requester.start();
    ncp_requester::destroyInstance();
    log.clear();
    service.emit("('ready',)");
    EXPECT_THAT(log.messages(), ElementsAre()) << "a destroyed requester was called";
    ncp_requester::getInstance().start();
    service.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready"));
}

// This listener also removes the other one, which still receives the event in progress.
template <int number>
void start_radio_and_unregister(const std::string& /*data*/, void* notes) {
    ncp_requester& requester = ncp_requester::getInstance();
    note<number>(requester.ember_start(1) ? "started" : "not started", notes);
    requester.unregister_callback(start_radio_and_unregister<0>);
    requester.unregister_callback(start_radio_and_unregister<4>);
}

TEST_F(NcpRequesterTest, ListenersMayCallTheRequesterAndSecondRegistrationIsIgnored) {
    Notes other;
    service.answer("ember_start", "(0,)");
    requester.register_callback(start_radio_and_unregister<0>, &notes);
    requester.register_callback(start_radio_and_unregister<4>, &notes);
    requester.register_callback(note<1>, &notes);
    requester.register_callback(note<1>, &other);
    requester.start();
    service.emit("('any text',)");
    service.emit("('',)");
    EXPECT_THAT(notes, testing::UnorderedElementsAre("0 started", "4 started", "1 any text", "1 "));
    service.answer("ember_get_rx_statistics", "('7 packets', 5)");
    std::string statistics = "before";
    EXPECT_FALSE(requester.ember_get_rx_statistics(statistics));
    EXPECT_EQ(statistics, "7 packets") << "even if the result is not 0";
}

TEST_F(NcpRequesterTest, StartGivesUpAfterTwentyAttempts) {
    attempts_to_refuse = 19;
    requester.register_callback(note<1>, &notes);
    requester.start();
    EXPECT_THAT(sleeps, testing::AllOf(testing::SizeIs(20), testing::Each(500'000)));
    EXPECT_THAT(log.messages(),
                Contains("E dbus_client.cpp: init_dbus > Fail to create dbus connection").Times(19));
    EXPECT_THAT(log.messages(), Contains("E dbus_client.cpp: Init > Fail to initialize dbus").Times(19));
    EXPECT_THAT(log.messages(), Contains(testing::HasSubstr("print_dbus_error > Error Code[")).Times(19));
    EXPECT_EQ(log.messages().back(), "E ncp_requester.cpp: start > Fail to Init Dubs Client");
    service.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre());
    requester.stop();
    EXPECT_EQ(log.messages().back(), "E ncp_requester.cpp: stop > Success to Deinit Dbus");
}

} // namespace
