#include "model/dbus_client.h"
#include "support/log_capture.h"
#include "support/scripted_service.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::StartsWith;

namespace {

int last_time_out_milliseconds = 0;

} // namespace

// Replaces GDBus's function at link time (-Wl,--wrap=g_dbus_proxy_call_sync).
extern "C" {
decltype(g_dbus_proxy_call_sync) __real_g_dbus_proxy_call_sync;
decltype(g_dbus_proxy_call_sync) __wrap_g_dbus_proxy_call_sync;
GVariant* __wrap_g_dbus_proxy_call_sync(GDBusProxy* proxy, const gchar* method, GVariant* parameters,
                                        GDBusCallFlags flags, gint time_out, GCancellable* cancellable,
                                        GError** error) {
    last_time_out_milliseconds = time_out;
    return __real_g_dbus_proxy_call_sync(proxy, method, parameters, flags, time_out, cancellable, error);
}
}

namespace {

class DBusClientTest : public testing::Test {
public:
    [[nodiscard]] std::vector<std::string> own_messages(const std::string& operation) const {
        return log.messages_of("dbus_client.cpp: " + operation);
    }
    void expect_last_messages(const std::map<std::string, std::string>& message_of_operation) const {
        for (const auto& [operation, message] : message_of_operation)
            EXPECT_EQ(own_messages(operation).back(), message);
    }

    LogCapture log;
    ScriptedService service;
    DBusClient client;
    Notes notes;
};

TEST_F(DBusClientTest, FailedInitReleasesEverythingAndLaterInitSucceeds) {
    forget_system_bus();
    {
        const ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/tmp/no-such-bus");
        EXPECT_FALSE(client.Init());
        GVariant* untouched = nullptr;
        EXPECT_FALSE(client.ProcessSyncCall("ember_set_power", g_variant_new("(i)", 3), untouched));
        EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
        EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
        EXPECT_THAT(own_messages("print_dbus_error"), ElementsAre(StartsWith("Error Code[")));
        expect_last_messages({{"init_dbus", "Fail to create dbus connection"},
                              {"Init", "Fail to initialize dbus"},
                              {"ProcessSyncCall", "Not Init Thing DBus Client"},
                              {"RegisterDBusSignalCB", "Not Init DBus Client"},
                              {"UnregisterDBusSignalCB", "Not Init DBus Client"}});
    }
    {
        const simulator::BusConnection shared = simulator::connect_to_system_bus();
        g_dbus_connection_close_sync(shared.get(), nullptr, nullptr);
        EXPECT_FALSE(client.Init());
        EXPECT_EQ(own_messages("init_dbus").back(), "Fail to create dbus proxy");
        EXPECT_FALSE(client.IsInitialized());
    }
    forget_system_bus();
    EXPECT_TRUE(client.Init());
    EXPECT_TRUE(client.Init());
    EXPECT_EQ(own_messages("Init").back(), "Already initialize DBus Client");
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    service.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready")) << "one subscription, not two";
}

TEST_F(DBusClientTest, CallsReturnTheReplyOrTheError) {
    client.Init();
    service.answer("ember_set_channel", "(0,)");
    set_host_behaviour(simulator::this_television(), "ember_stop", "error");
    g_autoptr(GVariant) reply = nullptr;
    ASSERT_TRUE(client.ProcessSyncCall("ember_set_channel", g_variant_new("(i)", 26), reply));
    EXPECT_STREQ(g_variant_get_type_string(reply), "(i)");
    EXPECT_THAT(service.calls(), ElementsAre("ember_set_channel(26)"));
    EXPECT_EQ(last_time_out_milliseconds, 120'000);
    GVariant* untouched = nullptr;
    // An error reply, an unknown method, and a call that GDBus rejects.
    for (const char* const method : {"ember_stop", "no_such_method", ""})
        EXPECT_FALSE(client.ProcessSyncCall(method, nullptr, untouched)) << method;
    EXPECT_EQ(untouched, nullptr);
    EXPECT_THAT(own_messages("print_dbus_error"),
                ElementsAre(HasSubstr("ember_stop failed"), StartsWith("Error Code["), "Error is NULL"));
}

TEST_F(DBusClientTest, RegistryIdentifiesEntriesByNameAndCallback) {
    const simulator::BusConnection shared = simulator::connect_to_system_bus(); // outlives Deinit
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
    service.emit("('a',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("other_event", note<1>));
    service.emit("('b',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("ncp_event", note<2>));
    client.Deinit();
    service.emit("('unheard',)");
    client.Init();
    service.emit("('c',)");
    EXPECT_THAT(notes, ElementsAre("2 a", "1 a", "2 b", "1 b", "1 c"));
    EXPECT_THAT(other, IsEmpty());
    EXPECT_THAT(own_messages("RegisterDBusSignalCB"),
                IsSupersetOf({"wrong param!!!", "callback is already registered!"}));
    EXPECT_THAT(own_messages("UnregisterDBusSignalCB"),
                IsSupersetOf({"wrong param!!!", "callback is already unregistered!"}));
}

TEST_F(DBusClientTest, CallbacksMayRemoveOthersAndTheirExceptionsAreLogged) {
    const auto remove_the_next = [](const std::string& text, void* test) {
        auto* const self = static_cast<DBusClientTest*>(test);
        note<1>(text, &self->notes);
        self->client.UnregisterDBusSignalCB("ncp_event", note<2>);
    };
    const auto fail = +[](const std::string& text, void*) { throw std::runtime_error("not " + text); };
    client.Init();
    client.RegisterDBusSignalCB("ncp_event", remove_the_next, this);
    client.RegisterDBusSignalCB("ncp_event", note<2>, &notes);
    client.RegisterDBusSignalCB("ncp_event", note<3>, &notes);
    service.emit("('a',)");
    service.emit("('b',)");
    EXPECT_THAT(notes, ElementsAre("1 a", "2 a", "3 a", "1 b", "3 b")) << "removed only for later signals";
    notes.clear();
    client.UnregisterDBusSignalCB("ncp_event", remove_the_next);
    client.UnregisterDBusSignalCB("ncp_event", note<3>);
    client.RegisterDBusSignalCB("ncp_event", fail, nullptr);
    service.emit("(7,)");
    EXPECT_EQ(own_messages("signal_callback").back(), "[n]");
    service.emit("('ready',)");
    EXPECT_EQ(own_messages("signal_callback").back(), "ended with an exception: not ready");

    const auto fatal = g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK));
    g_autoptr(GVariant) event = g_variant_ref_sink(g_variant_new_parsed("('called',)"));
    client.UnregisterDBusSignalCB("ncp_event", fail);
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    DBusClient::signal_callback(nullptr, "", "", "", "ncp_event", event, &client);
    EXPECT_THAT(notes, ElementsAre("1 called")) << "outside of a dispatch";
    g_log_set_always_fatal(fatal);
}

} // namespace
