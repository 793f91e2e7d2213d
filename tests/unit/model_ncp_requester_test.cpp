#include "model/ncp_requester.h"
#include "support/host.h"
#include "support/log_capture.h"
#include "support/sleep_recorder.h"
#include "support/surroundings.h"

#include <gmock/gmock.h>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Notes = std::vector<std::string>;

template <int number>
void note(const std::string& data, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + data);
}

class NcpRequesterTest : public testing::Test {
protected:
    ~NcpRequesterTest() override { ncp_requester::destroyInstance(); }

    std::vector<std::string> own_messages(const std::string& operation) {
        return log.messages_of("ncp_requester.cpp: " + operation);
    }

    LogCapture log;
    SleepRecorder sleep;
    Host host;
    ncp_requester& requester = ncp_requester::getInstance();
    Notes notes;
};

TEST_F(NcpRequesterTest, StartsOnceAndStopsOnce) {
    requester.register_callback(note<1>, &notes);
    requester.stop();
    EXPECT_THAT(own_messages("stop"), ElementsAre("stop ncp requester", "Not yet Started"));
    requester.start();
    requester.start();
    EXPECT_THAT(own_messages("start"), ElementsAre("start ncp request", "Success to Init Dbus",
                                                   "start ncp request", "Success to Init Dbus"));
    EXPECT_THAT(sleep.sleeps(), ElementsAre(500'000)); // one, of the first start
    host.emit("('ready',)");
    log.clear();
    requester.stop();
    EXPECT_THAT(own_messages("stop"), ElementsAre("stop ncp requester", "Success to Deinit Dbus"));
    host.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready"));
}

TEST_F(NcpRequesterTest, ListenersAreCalledByAddressWithTheirFirstUserData) {
    Notes other;
    requester.register_callback(note<1>, &notes);
    requester.register_callback(note<2>, &notes);
    requester.register_callback(note<1>, &other);
    requester.start();
    host.emit("('any text',)");
    requester.unregister_callback(note<2>);
    requester.unregister_callback(note<3>);
    host.emit("('',)");
    const bool one_is_first = std::less<>()(DBusSignalCB{note<1>}, DBusSignalCB{note<2>});
    EXPECT_THAT(notes, one_is_first ? ElementsAre("1 any text", "2 any text", "1 ")
                                    : ElementsAre("2 any text", "1 any text", "1 "));
    EXPECT_THAT(other, IsEmpty());
}

void use_the_radio_and_leave(const std::string& data, void* notes) {
    note<0>(data, notes);
    ncp_requester& requester = ncp_requester::getInstance();
    static_cast<Notes*>(notes)->push_back(requester.ember_start(1) ? "started" : "not started");
    requester.unregister_callback(use_the_radio_and_leave);
}

TEST_F(NcpRequesterTest, ListenerMaySendCommandsAndRemoveItself) {
    host.answer("ember_start", "reply (0,)");
    requester.register_callback(use_the_radio_and_leave, &notes);
    requester.start();
    host.emit("('ready',)");
    host.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("0 ready", "started"));
}

class UnreachableBusTest : public NcpRequesterTest {
protected:
    UnreachableBusTest() : address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/tmp/no-such-bus") {
        forget_system_bus();
    }
    ScopedEnvironment address;
};

TEST_F(UnreachableBusTest, StartGivesUpAfterTwentyAttempts) {
    requester.start();
    EXPECT_THAT(log.messages_of("dbus_client.cpp: Init"), SizeIs(20 * 3));
    EXPECT_THAT(sleep.sleeps(), testing::AllOf(SizeIs(20), Each(500'000)));
    EXPECT_THAT(own_messages("start"), ElementsAre("start ncp request", "Fail to Init Dubs Client"));
    requester.stop();
    EXPECT_EQ(own_messages("stop").back(), "Not yet Started");
}

TEST_F(UnreachableBusTest, OutcomeOfTheLastAttemptIsNotLookedAt) {
    const SleepRecorder reachable_at_last([this](std::size_t sleeps) {
        if (sleeps == 19)
            address.restore();
    });
    requester.register_callback(note<1>, &notes);
    requester.start();
    EXPECT_EQ(own_messages("start").back(), "Fail to Init Dubs Client");
    host.emit("('ready',)");
    EXPECT_THAT(notes, IsEmpty());
    requester.stop();
    EXPECT_EQ(log.messages_of("dbus_client.cpp: UnregisterDBusSignalCB").back(),
              "callback is already unregistered!");
    EXPECT_EQ(own_messages("stop").back(), "Success to Deinit Dbus");
}

struct Operation {
    std::string name;
    std::string call; // as the service sees it
    std::function<bool(ncp_requester&)> run;
};

std::vector<Operation> operations() {
    using Requester = ncp_requester;
    return {
        {"ember_start", "ember_start(0)", [](Requester& r) { return r.ember_start(0); }},
        {"ember_stop", "ember_stop()", [](Requester& r) { return r.ember_stop(); }},
        {"ember_set_channel", "ember_set_channel(-99)",
         [](Requester& r) { return r.ember_set_channel(-99); }},
        {"ember_set_power", "ember_set_power(20)", [](Requester& r) { return r.ember_set_power(20); }},
        {"ember_start_stream", "ember_start_stream()", [](Requester& r) { return r.ember_start_stream(); }},
        {"ember_stop_stream", "ember_stop_stream()", [](Requester& r) { return r.ember_stop_stream(); }},
        {"ember_reset_rx_statistics", "ember_reset_rx_statistics()",
         [](Requester& r) { return r.ember_reset_rx_statistics(); }}};
}

TEST_F(NcpRequesterTest, CommandSucceedsOnlyWithResultCodeZero) {
    for (const auto& [name, call, run] : operations())
        EXPECT_FALSE(run(requester)) << name << " before start";
    EXPECT_THAT(host.calls(), IsEmpty());
    requester.start();
    for (const auto& [name, call, run] : operations()) {
        host.answer(name, "reply (0,)");
        EXPECT_TRUE(run(requester)) << name;
        EXPECT_EQ(host.calls().back(), call);
        log.clear();
        host.answer(name, "reply (-3,)");
        EXPECT_FALSE(run(requester)) << name << " with code -3";
        EXPECT_THAT(own_messages(name), ElementsAre(name));
        EXPECT_THAT(own_messages("check_result"), ElementsAre("Result = -3"));
        host.answer(name, "error");
        EXPECT_FALSE(run(requester)) << name << " with an error reply";
        EXPECT_EQ(own_messages(name).back(), "Fail to call " + name);
        for (const std::string wrong : {"()", "('0',)", "(uint32 0,)", "(0, 0)", "(<0>,)"}) {
            host.answer(name, "reply " + wrong);
            EXPECT_FALSE(run(requester)) << name << " with " << wrong;
        }
        EXPECT_EQ(own_messages(name).back(), "Reply of " + name + " has the type (v), expected (i)");
        EXPECT_THAT(own_messages("check_result"), SizeIs(1));
    }
}

TEST_F(NcpRequesterTest, StatisticsTextIsReplacedWheneverTheReplyIsUsable) {
    requester.start();
    struct Case {
        const char* reply;
        const char* text;
        bool success;
    };
    for (const auto& [reply, text, success] :
         {Case{"('12 packets of 20', 0)", "12 packets of 20", true}, Case{"('', 0)", "", true},
          Case{"('7', 5)", "7", false}, Case{"(0,)", "before", false}, Case{"('7', '0')", "before", false},
          Case{"(7, 0)", "before", false}}) {
        host.answer("ember_get_rx_statistics", std::string("reply ") + reply);
        std::string statistics = "before";
        EXPECT_EQ(requester.ember_get_rx_statistics(statistics), success) << reply;
        EXPECT_EQ(statistics, text) << reply;
    }
}

} // namespace
