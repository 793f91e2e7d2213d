#include "model/dbus_client.h"
#include "support/host.h"
#include "support/log_capture.h"
#include "support/surroundings.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

int last_timeout = 0;

} // namespace

// The linker puts this in place of g_dbus_proxy_call_sync (-Wl,--wrap).
extern "C" {
decltype(g_dbus_proxy_call_sync) __real_g_dbus_proxy_call_sync, __wrap_g_dbus_proxy_call_sync;
GVariant* __wrap_g_dbus_proxy_call_sync(GDBusProxy* proxy, const gchar* method, GVariant* parameters,
                                        GDBusCallFlags flags, gint timeout, GCancellable* cancellable,
                                        GError** error) {
    last_timeout = timeout;
    return __real_g_dbus_proxy_call_sync(proxy, method, parameters, flags, timeout, cancellable, error);
}
}

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
    Host host;
    DBusClient client;
    Notes notes;
};

TEST_F(DBusClientTest, IsSubscribedOnceHoweverOftenItIsInitialised) {
    ASSERT_TRUE(client.Init());
    ASSERT_TRUE(client.Init());
    EXPECT_EQ(log.messages_of("dbus_client.cpp: Init").back(), "Already initialize DBus Client");
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    host.emit("('ready',)");
    client.Deinit();
    EXPECT_FALSE(client.IsInitialized());
    host.emit("('unheard',)");
    client.Init();
    host.emit("('heard',)");
    EXPECT_THAT(notes, ElementsAre("1 ready", "1 heard")) << "the registry outlives the link";
    {
        DBusClient short_lived;
        short_lived.Init();
        short_lived.RegisterDBusSignalCB("ncp_event", note<2>, &notes);
    }
    host.emit("('late',)");
    EXPECT_EQ(notes.back(), "1 late");
}

TEST_F(DBusClientTest, UninitialisedClientRefusesEverything) {
    GVariant* untouched = nullptr;
    GVariant* const parameters = g_variant_ref(g_variant_new("(i)", 3)); // floating still, and ours
    EXPECT_FALSE(client.ProcessSyncCall("ember_stop", parameters, untouched));
    EXPECT_FALSE(g_variant_is_floating(parameters)) << "taken over though not sent";
    g_variant_unref(parameters);
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
    client.Deinit();
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(log.messages_of("dbus_client.cpp: ProcessSyncCall").back(), "Not Init Thing DBus Client");
    for (const std::string operation : {"RegisterDBusSignalCB", "UnregisterDBusSignalCB"})
        EXPECT_EQ(log.messages_of("dbus_client.cpp: " + operation).back(), "Not Init DBus Client");
}

TEST_F(DBusClientTest, FailedInitLeavesNothingBehind) {
    forget_system_bus();
    const ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/tmp/no-such-bus");
    EXPECT_FALSE(client.Init());
    EXPECT_FALSE(client.IsInitialized());
    EXPECT_THAT(log.messages_of("dbus_client.cpp: print_dbus_error"), ElementsAre(StartsWith("Error Code[")));
    EXPECT_EQ(log.messages_of("dbus_client.cpp: init_dbus").back(), "Fail to create dbus connection");
    EXPECT_EQ(log.messages_of("dbus_client.cpp: Init").back(), "Fail to initialize dbus");
    address.restore();
    {
        const GObjectHandle<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
        g_dbus_connection_set_exit_on_close(shared.get(), FALSE);
        g_dbus_connection_close_sync(shared.get(), nullptr, nullptr);
        EXPECT_FALSE(client.Init());
    }
    EXPECT_EQ(log.messages_of("dbus_client.cpp: init_dbus").back(), "Fail to create dbus proxy");
    EXPECT_FALSE(client.IsInitialized());
    forget_system_bus();
    EXPECT_TRUE(client.Init());
}

TEST_F(DBusClientTest, CallsReturnTheReplyOrTheErrorOnly) {
    client.Init();
    host.answer("ember_set_channel", "reply (0,)");
    host.answer("ember_stop", "error");
    host.answer("ember_start_stream", "dies");
    g_autoptr(GVariant) reply = nullptr;
    ASSERT_TRUE(client.ProcessSyncCall("ember_set_channel", g_variant_new("(i)", 26), reply));
    EXPECT_STREQ(g_variant_get_type_string(reply), "(i)");
    EXPECT_THAT(host.calls(), ElementsAre("ember_set_channel(26)"));
    EXPECT_EQ(last_timeout, 120'000);
    GVariant* untouched = nullptr;
    // Error reply, unknown method, a call that GIO refuses, a service that dies in the call, no service.
    for (const char* const method : {"ember_stop", "no_such_method", "", "ember_start_stream", "ember_stop"})
        EXPECT_FALSE(client.ProcessSyncCall(method, nullptr, untouched)) << method;
    EXPECT_EQ(untouched, nullptr);
    EXPECT_THAT(log.messages_of("dbus_client.cpp: print_dbus_error"),
                ElementsAre(testing::HasSubstr("ember_stop failed"), StartsWith("Error Code["),
                            "Error is NULL", StartsWith("Error Code["), StartsWith("Error Code[")));
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
    host.emit("('a',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("other_event", note<1>));
    host.emit("('b',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("ncp_event", note<2>));
    host.emit("('c',)");
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
    host.emit("('a',)");
    host.emit("('b',)");
    EXPECT_THAT(notes, ElementsAre("1 a", "2 a", "3 a", "1 b", "3 b"));
}

TEST_F(DBusClientTest, EventsAreNeverUnpackedBlindly) {
    client.Init();
    host.emit("('nobody listens',)");
    EXPECT_EQ(log.messages_of("dbus_client.cpp: invoke_callback").back(), "Event Data: [nobody listens]");
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    log.clear();
    for (const char* const values : {"(7,)", "()", "('ready', 0)", "(['ready'],)"})
        host.emit(values);
    EXPECT_THAT(notes, IsEmpty());
    EXPECT_THAT(log.messages_of("dbus_client.cpp: invoke_callback"),
                ElementsAre("Signal ncp_event has the type (i), expected (s)",
                            "Signal ncp_event has the type (), expected (s)",
                            "Signal ncp_event has the type (si), expected (s)",
                            "Signal ncp_event has the type (as), expected (s)"));
    DBusClient::signal_callback(nullptr, "", "", "", "", nullptr, nullptr);
    EXPECT_EQ(log.messages_of("dbus_client.cpp: signal_callback").back(), "pDBusClient is NULL");
}

TEST_F(DBusClientTest, ExceptionOfAListenerGoesToTheLogAndNoFurther) {
    client.Init();
    client.RegisterDBusSignalCB(
        "ncp_event", [](const std::string& text, void*) { throw std::runtime_error("not " + text); },
        nullptr);
    host.emit("('ready',)");
    EXPECT_EQ(log.messages().back(),
              "E dbus_client.cpp: signal_callback > ended with an exception: not ready");
}

} // namespace
