#include "base/wait_until.h"
#include "model/dbus_client.h"
#include "support/log_capture.h"
#include "support/scripted_service.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::StartsWith;

static int last_time_out_milliseconds = 0;

// Replaces GDBus's function at link time (-Wl,--wrap=g_dbus_proxy_call_sync).
extern "C" {
decltype(g_dbus_proxy_call_sync) __real_g_dbus_proxy_call_sync;
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
    LogCapture log;
    ScriptedService service;
    DBusClient client;
    Notes notes;
};

TEST_F(DBusClientTest, FailsWithoutInitAndLaterInitSucceeds) {
    GVariant* untouched = nullptr;
    EXPECT_FALSE(client.ProcessSyncCall("ember_set_power", g_variant_new("(i)", 3), untouched));
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
    {
        const simulator::BusConnection shared = simulator::connect_to_system_bus();
        g_dbus_connection_close_sync(shared.get(), nullptr, nullptr);
        EXPECT_FALSE(client.Init());
    }
    const auto init = [this] {
        g_main_context_iteration(nullptr, FALSE);
        return client.Init();
    };
    EXPECT_TRUE(simulator::wait_until(init, std::chrono::seconds(1)))
        << "the closed connection is still referenced";
    EXPECT_TRUE(client.Init());
    EXPECT_THAT(log.messages(),
                IsSupersetOf({"E dbus_client.cpp: ProcessSyncCall > Not Init Thing DBus Client",
                              "E dbus_client.cpp: RegisterDBusSignalCB > Not Init DBus Client",
                              "E dbus_client.cpp: UnregisterDBusSignalCB > Not Init DBus Client",
                              "E dbus_client.cpp: init_dbus > Fail to create dbus proxy",
                              "E dbus_client.cpp: Init > Already initialize DBus Client"}));
    client.RegisterDBusSignalCB("ncp_event", note<1>, &notes);
    service.emit("('ready',)");
    EXPECT_THAT(notes, ElementsAre("1 ready")) << "one subscription, not two";
}

TEST_F(DBusClientTest, CallsWaitTwoMinutesAndLogErrors) {
    client.Init();
    GVariant* untouched = nullptr;
    EXPECT_FALSE(client.ProcessSyncCall("no_such_method", nullptr, untouched));
    EXPECT_EQ(last_time_out_milliseconds, 120'000);
    EXPECT_THAT(log.messages().back(), StartsWith("E dbus_client.cpp: print_dbus_error > Error Code["));
    EXPECT_FALSE(client.ProcessSyncCall("", nullptr, untouched)) << "GDBus rejects it without an error";
    EXPECT_EQ(log.messages().back(), "E dbus_client.cpp: print_dbus_error > Error is NULL");
    EXPECT_EQ(untouched, nullptr);
}

TEST_F(DBusClientTest, RegistrationsAreIdentifiedBySignalAndCallback) {
    const simulator::BusConnection shared = simulator::connect_to_system_bus(); // outlives Deinit
    client.Init();
    EXPECT_FALSE(client.RegisterDBusSignalCB("", note<1>, &notes));
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", nullptr, &notes));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("", note<1>));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", nullptr));
    EXPECT_FALSE(client.UnregisterDBusSignalCB("ncp_event", note<1>));
    EXPECT_TRUE(client.RegisterDBusSignalCB("ncp_event", note<2>, &notes));
    EXPECT_TRUE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    EXPECT_TRUE(client.RegisterDBusSignalCB("other_event", note<1>, &notes));
    EXPECT_FALSE(client.RegisterDBusSignalCB("ncp_event", note<1>, &notes));
    service.emit("('a',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("other_event", note<1>));
    service.emit("('b',)");
    EXPECT_TRUE(client.UnregisterDBusSignalCB("ncp_event", note<2>));
    client.Deinit();
    service.emit("('unheard',)");
    client.Init();
    service.emit("('c',)");
    EXPECT_THAT(notes, ElementsAre("2 a", "1 a", "2 b", "1 b", "1 c"));
    EXPECT_THAT(
        log.messages(),
        IsSupersetOf({"E dbus_client.cpp: RegisterDBusSignalCB > wrong param!!!",
                      "E dbus_client.cpp: RegisterDBusSignalCB > callback is already registered!",
                      "E dbus_client.cpp: UnregisterDBusSignalCB > wrong param!!!",
                      "E dbus_client.cpp: UnregisterDBusSignalCB > callback is already unregistered!"}));
}

TEST_F(DBusClientTest, CallbacksMayRemoveOthersAndTheirExceptionsAreLogged) {
    const auto remove_the_next = [](const std::string& text, void* test) {
        auto* const self = static_cast<DBusClientTest*>(test);
        note<1>(text, &self->notes);
        self->client.UnregisterDBusSignalCB("ncp_event", note<2>);
    };
    const auto fail = [](const std::string& text, void*) { throw std::runtime_error("not " + text); };
    client.Init();
    client.RegisterDBusSignalCB("ncp_event", remove_the_next, this);
    client.RegisterDBusSignalCB("ncp_event", note<2>, &notes);
    client.RegisterDBusSignalCB("ncp_event", note<3>, &notes);
    service.emit("('a',)");
    client.RegisterDBusSignalCB("ncp_event", fail, nullptr);
    service.emit("('b',)");
    EXPECT_THAT(notes, ElementsAre("1 a", "2 a", "3 a", "1 b", "3 b")) << "removed only for later signals";
    EXPECT_EQ(log.messages().back(), "E dbus_client.cpp: signal_callback > ended with an exception: not b");
}

} // namespace
