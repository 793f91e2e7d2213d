#include "model/dbus_client.h"
#include "support/log_capture.h"
#include "support/scripted_service.h"
#include "support/surroundings.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using Notes = std::vector<std::string>;

// Distinct callbacks that note their number and the text they got; the user data is the notes.
template <int number>
void note(const std::string& data, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + data);
}

class DBusClientTest : public testing::Test {
protected:
    LogCapture log;
    ScriptedService service;
    DBusClient client;
    Notes notes;
};

TEST_F(DBusClientTest, InitConnectsStepByStepAndOnlyOnce) {
    ASSERT_TRUE(client.Init());
    EXPECT_THAT(log.messages(),
                ElementsAre("E dbus_client.cpp: Init > [b]", "E dbus_client.cpp: Init > check init",
                            "E dbus_client.cpp: init_dbus > create_dbus_connection",
                            "E dbus_client.cpp: init_dbus > create_dbus_proxy",
                            "E dbus_client.cpp: init_dbus > subscribe_signal",
                            "E dbus_client.cpp: init_dbus > success to init dbus",
                            "E dbus_client.cpp: Init > [n]"));
    log.clear();
    client.Init();
    EXPECT_THAT(log.messages_of("dbus_client.cpp: Init"),
                ElementsAre("[b]", "check init", "Already initialize DBus Client"));
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    service.emit("ncp_event", "('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready")); // one subscription, not two
}

TEST_F(DBusClientTest, UninitialisedClientRefusesEverything) {
    service.answer("ember_stop", "(0,)");
    GVariant* untouched = nullptr;
    GVariant* const parameters = g_variant_ref(g_variant_new("(i)", 3)); // floating still, and ours
    EXPECT_FALSE(client.ProcessSyncCall("ember_stop", parameters, untouched));
    EXPECT_FALSE(g_variant_is_floating(parameters)); // taken over though not sent
    g_variant_unref(parameters);
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
    client.Deinit();
    EXPECT_THAT(service.calls(), IsEmpty());
    EXPECT_THAT(
        log.messages(),
        ElementsAre("E dbus_client.cpp: ProcessSyncCall > [b] method = ember_stop, timeout = 120000 msec",
                    "E dbus_client.cpp: ProcessSyncCall > Not Init Thing DBus Client",
                    "E dbus_client.cpp: RegisterDBusSignalCB > [b] signal_name = ncp_event",
                    "E dbus_client.cpp: RegisterDBusSignalCB > Not Init DBus Client",
                    "E dbus_client.cpp: UnregisterDBusSignalCB > [b] signal_name = ncp_event",
                    "E dbus_client.cpp: UnregisterDBusSignalCB > Not Init DBus Client",
                    "E dbus_client.cpp: Deinit > [b]", "E dbus_client.cpp: Deinit > [n]"));
}

TEST_F(DBusClientTest, UnreachableBusFailsAndALaterInitSucceeds) {
    forget_system_bus();
    const ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/tmp/no-such-bus");
    EXPECT_FALSE(client.Init());
    EXPECT_FALSE(client.IsInitialized());
    EXPECT_THAT(log.messages_of("dbus_client.cpp: print_dbus_error"), ElementsAre(StartsWith("Error Code[")));
    EXPECT_THAT(log.messages_of("dbus_client.cpp: init_dbus"),
                ElementsAre("create_dbus_connection", "Fail to create dbus connection"));
    EXPECT_THAT(log.messages_of("dbus_client.cpp: Init"),
                ElementsAre("[b]", "check init", "Fail to initialize dbus"));
    address.restore();
    EXPECT_TRUE(client.Init());
}

TEST_F(DBusClientTest, ClosedConnectionFailsAtTheProxyAndIsNotKept) {
    {
        const GObjectHandle<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
        g_dbus_connection_close_sync(shared.get(), nullptr, nullptr);
        EXPECT_FALSE(client.Init());
    }
    EXPECT_THAT(log.messages_of("dbus_client.cpp: init_dbus"),
                ElementsAre("create_dbus_connection", "create_dbus_proxy", "Fail to create dbus proxy"));
    EXPECT_FALSE(client.IsInitialized());
    forget_system_bus();
    EXPECT_TRUE(client.Init());
}

TEST_F(DBusClientTest, CallsReturnTheReplyOrTheErrorOnly) {
    client.Init();
    service.answer("ember_set_channel", "(0,)");
    service.refuse("ember_stop", "org.orvane.Error.Busy");
    service.vanish_in("ember_start");
    log.clear();
    g_autoptr(GVariant) reply = nullptr;
    ASSERT_TRUE(client.ProcessSyncCall("ember_set_channel", g_variant_new("(i)", 26), reply));
    EXPECT_STREQ(g_variant_get_type_string(reply), "(i)");
    EXPECT_THAT(service.calls(), ElementsAre("ember_set_channel (26,)"));
    EXPECT_THAT(log.messages_of("dbus_client.cpp: ProcessSyncCall"),
                ElementsAre("[b] method = ember_set_channel, timeout = 120000 msec", "[n]"));
    log.clear();
    GVariant* untouched = nullptr;
    // Error reply, unknown method, service that dies in the call, no service, and a call that GIO refuses.
    for (const char* const method : {"ember_stop", "no_such_method", "ember_start", "ember_start", ""})
        EXPECT_FALSE(client.ProcessSyncCall(method, nullptr, untouched)) << method;
    EXPECT_EQ(untouched, nullptr);
    EXPECT_THAT(log.messages_of("dbus_client.cpp: print_dbus_error"),
                ElementsAre(testing::HasSubstr("org.orvane.Error.Busy"), StartsWith("Error Code["),
                            StartsWith("Error Code["), StartsWith("Error Code["), "Error is NULL"));
}

TEST_F(DBusClientTest, RegistryKnowsAnEntryByNameAndCallback) {
    client.Init();
    Notes other;
    EXPECT_FALSE(client.RegisterDBusSignalCB("", note<1>, &notes));
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", nullptr, &notes));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("", note<1>));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", nullptr));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
    EXPECT_TRUE(client.RegisterDBusSignalCB("ncp_event", note<2>, &notes));
    EXPECT_TRUE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    EXPECT_TRUE(client.RegisterDBusSignalCB("other_event", note<1>, &notes));
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &other));
    service.emit("ncp_event", "('a',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("other_event", note<1>));
    service.emit("ncp_event", "('b',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("ncp_event", note<2>));
    service.emit("ncp_event", "('c',)");
    EXPECT_THAT(notes, ElementsAre("2 a", "1 a", "2 b", "1 b", "1 c"));
    EXPECT_THAT(other, IsEmpty());
    EXPECT_THAT(
        log.messages_of("dbus_client.cpp: RegisterDBusSignalCB"),
        testing::IsSupersetOf({"wrong param!!!", "wrong param!!!", "callback is already registered!"}));
    EXPECT_THAT(
        log.messages_of("dbus_client.cpp: UnregisterDBusSignalCB"),
        testing::IsSupersetOf({"wrong param!!!", "wrong param!!!", "callback is already unregistered!"}));
}

struct Removal {
    DBusClient* client;
    Notes* notes;
};

void remove_the_next(const std::string& data, void* removal) {
    const auto* const self = static_cast<Removal*>(removal);
    note<1>(data, self->notes);
    self->client->UnregisterDBusSignalCB("ncp_event", note<2>);
}

TEST_F(DBusClientTest, RemovalDuringADispatchTakesEffectFromTheNextSignalOn) {
    client.Init();
    Removal removal{&client, &notes};
    client.RegisterDBusSignalCB("ncp_event", remove_the_next, &removal);
    client.RegisterDBusSignalCB("ncp_event", note<2>, &notes);
    client.RegisterDBusSignalCB("ncp_event", note<3>, &notes);
    service.emit("ncp_event", "('a',)");
    service.emit("ncp_event", "('b',)");
    EXPECT_THAT(notes, ElementsAre("1 a", "2 a", "3 a", "1 b", "3 b"));
}

TEST_F(DBusClientTest, EventsAreLoggedWithoutListenersAndNeverUnpackedBlindly) {
    client.Init();
    log.clear();
    service.emit("ncp_event", "('nobody listens',)");
    EXPECT_THAT(log.messages_of("dbus_client.cpp: invoke_callback"),
                ElementsAre("Event Data: [nobody listens]"));
    EXPECT_THAT(
        log.messages_of("dbus_client.cpp: signal_callback"),
        ElementsAre(testing::HasSubstr("interface_name : org.orvane.qm_ncp_host.service, signal_name : ncp"),
                    "[n]"));
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    log.clear();
    for (const char* const arguments : {"(7,)", "()", "('ready', 0)", "(['ready'],)"})
        service.emit("ncp_event", arguments);
    EXPECT_THAT(notes, IsEmpty());
    EXPECT_THAT(log.messages_of("dbus_client.cpp: invoke_callback"),
                ElementsAre("Signal ncp_event has the type (i), expected (s)",
                            "Signal ncp_event has the type (), expected (s)",
                            "Signal ncp_event has the type (si), expected (s)",
                            "Signal ncp_event has the type (as), expected (s)"));
    log.clear();
    DBusClient::signal_callback(nullptr, "", "", "", "", nullptr, nullptr);
    EXPECT_EQ(log.messages_of("dbus_client.cpp: signal_callback").back(), "pDBusClient is NULL");
}

TEST_F(DBusClientTest, ExceptionOfAListenerGoesToTheLogAndNoFurther) {
    client.Init();
    client.RegisterDBusSignalCB(
        "ncp_event", [](const std::string& text, void*) { throw std::runtime_error("not " + text); },
        nullptr);
    service.emit("ncp_event", "('ready',)");
    EXPECT_EQ(log.messages().back(),
              "E dbus_client.cpp: signal_callback > ended with an exception: not ready");
}

TEST_F(DBusClientTest, DeinitEndsDeliveryAndKeepsTheRegistry) {
    client.Init();
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    client.Deinit();
    EXPECT_FALSE(client.IsInitialized());
    service.emit("ncp_event", "('unheard',)");
    client.Init();
    service.emit("ncp_event", "('heard',)");
    EXPECT_THAT(notes, ElementsAre("1 heard"));
}

TEST_F(DBusClientTest, DestroyedClientIsNotCalledAgain) {
    {
        DBusClient short_lived;
        short_lived.Init();
        short_lived.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    }
    log.clear();
    service.emit("ncp_event", "('late',)");
    EXPECT_THAT(log.messages(), IsEmpty());
}

} // namespace
