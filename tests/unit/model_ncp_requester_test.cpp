#include "model/ncp_requester.h"
#include "support/log_capture.h"
#include "support/scripted_service.h"
#include "support/sleep_recorder.h"

#include <gmock/gmock.h>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class NcpRequesterTest : public testing::Test {
protected:
    ~NcpRequesterTest() override { ncp_requester::destroyInstance(); }

    [[nodiscard]] std::vector<std::string> own_messages(const std::string& operation) const {
        return log.messages_of("ncp_requester.cpp: " + operation);
    }

    LogCapture log;
    SleepRecorder sleep;
    ScriptedService service;
    ncp_requester& requester = ncp_requester::getInstance();
    Notes notes;
};

TEST_F(NcpRequesterTest, StartsAndStopsOnceAndNewInstanceHasNoListeners) {
    const simulator::BusConnection shared = simulator::connect_to_system_bus(); // outlives the requester
    requester.register_callback(note<1>, &notes);
    requester.stop();
    EXPECT_EQ(own_messages("stop").back(), "Not yet Started");
    requester.start();
    requester.start();
    EXPECT_THAT(sleep.sleeps(), ElementsAre(500'000)) << "only for the first start";
    service.emit("('ready',)");
    requester.stop();
    service.emit("('ready',)");
    requester.start();
    ncp_requester::destroyInstance();
    log.clear();
    service.emit("('ready',)");
    EXPECT_THAT(log.messages(), IsEmpty()) << "a destroyed requester was called";
    ncp_requester::getInstance().start();
    service.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready"));
}

// Also removes the other listener, which still receives the event in progress.
template <int number>
void start_radio_and_unregister(const std::string& /*data*/, void* notes) {
    ncp_requester& requester = ncp_requester::getInstance();
    note<number>(requester.ember_start(1) ? "started" : "not started", notes);
    requester.unregister_callback(start_radio_and_unregister<0>);
    requester.unregister_callback(start_radio_and_unregister<4>);
}

TEST_F(NcpRequesterTest, ListenersMaySendCommandsRemoveThemselvesAndKeepTheirFirstUserData) {
    Notes other;
    service.answer("ember_start", "(0,)");
    requester.register_callback(start_radio_and_unregister<0>, &notes);
    requester.register_callback(start_radio_and_unregister<4>, &notes);
    requester.register_callback(note<1>, &notes);
    requester.register_callback(note<2>, &notes);
    requester.register_callback(note<1>, &other);
    requester.unregister_callback(note<2>);
    requester.unregister_callback(note<3>);
    requester.start();
    service.emit("('any text',)");
    service.emit("('',)");
    EXPECT_THAT(notes, testing::UnorderedElementsAre("0 started", "4 started", "1 any text", "1 "));
    EXPECT_THAT(other, IsEmpty());
    service.answer("ember_get_rx_statistics", "('7 packets', 5)");
    std::string statistics = "before";
    EXPECT_FALSE(requester.ember_get_rx_statistics(statistics));
    EXPECT_EQ(statistics, "7 packets") << "even if the result is not 0";
}

TEST_F(NcpRequesterTest, StartGivesUpAfterTwentyAttempts) {
    forget_system_bus();
    std::optional<ScopedEnvironment> unreachable(std::in_place, "DBUS_SYSTEM_BUS_ADDRESS",
                                                 "unix:path=/tmp/no-such-bus");
    const SleepRecorder reachable_at_last([&](std::size_t sleeps) {
        if (sleeps == 19)
            unreachable.reset();
    });
    requester.register_callback(note<1>, &notes);
    requester.start();
    EXPECT_THAT(log.messages_of("dbus_client.cpp: print_dbus_error"), SizeIs(19));
    EXPECT_THAT(reachable_at_last.sleeps(), testing::AllOf(SizeIs(20), Each(500'000)));
    EXPECT_EQ(own_messages("start").back(), "Fail to Init Dubs Client");
    service.emit("('ready',)");
    EXPECT_THAT(notes, IsEmpty());
    requester.stop();
    EXPECT_EQ(own_messages("stop").back(), "Success to Deinit Dbus");
}

} // namespace
