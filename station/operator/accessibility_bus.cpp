#include "accessibility_bus.h"

#include <gio/gio.h>

namespace station {
namespace {

constexpr auto launcher = "org.a11y.Bus";
constexpr auto launcher_path = "/org/a11y/bus";

[[noreturn]] void fail(const GError* error) {
    throw std::runtime_error(std::string("no accessibility bus: ") + error->message);
}

GVariant* ask_launcher(GDBusConnection* bus, const char* interface, const char* method, GVariant* arguments) {
    g_autoptr(GError) error = nullptr;
    GVariant* const answer =
        g_dbus_connection_call_sync(bus, launcher, launcher_path, interface, method, arguments, nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (answer == nullptr)
        fail(error);
    return answer;
}

/** Not the process's shared connection, whose end would end the process. */
GDBusConnection* connect(const char* address) {
    g_autoptr(GError) error = nullptr;
    GDBusConnection* const connection = g_dbus_connection_new_for_address_sync(
        address,
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    if (connection == nullptr)
        fail(error);
    return connection;
}

} // namespace

void AccessibilityBus::Release::operator()(_GDBusConnection* connection) const { g_object_unref(connection); }

AccessibilityBus::AccessibilityBus(std::chrono::milliseconds patience) : patience_(patience) {
    g_autoptr(GError) error = nullptr;
    g_autofree char* session_address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (session_address == nullptr)
        fail(error);
    g_autoptr(GDBusConnection) session = connect(session_address);
    g_variant_unref(ask_launcher(
        session, "org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled", g_variant_new_boolean(TRUE))));
    g_autoptr(GVariant) answer = ask_launcher(session, launcher, "GetAddress", nullptr);
    const char* address = nullptr;
    g_variant_get(answer, "(&s)", &address);
    connection_.reset(connect(address));
}

bool AccessibilityBus::is_connected() const {
    return g_dbus_connection_is_closed(connection_.get()) == FALSE;
}

struct AccessibilityBus::Questions::Asked {
    Questions& asker;
    Taker taker;
    GVariant* answer = nullptr;
    GError* error = nullptr;

    Asked(Questions& questions, Taker wanted) : asker(questions), taker(std::move(wanted)) {}
    Asked(const Asked&) = delete;
    Asked& operator=(const Asked&) = delete;
    ~Asked() {
        g_clear_error(&error);
        g_clear_pointer(&answer, g_variant_unref);
    }

    static void on_answer(GObject* connection, GAsyncResult* result, gpointer data) {
        auto& asked = *static_cast<Asked*>(data);
        asked.answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &asked.error);
        --asked.asker.open_;
    }
};

AccessibilityBus::Questions::Questions(const AccessibilityBus& bus)
    : bus_(bus), context_(g_main_context_new()) {
    g_main_context_push_thread_default(context_); // the answers come here, whatever loop the caller has
}

AccessibilityBus::Questions::~Questions() {
    wait_for_answers();
    g_main_context_pop_thread_default(context_);
    g_main_context_unref(context_);
}

void AccessibilityBus::Questions::ask(const Question& question, Taker taker) {
    Asked& asked = asked_.emplace_back(*this, std::move(taker));
    ++open_;
    g_dbus_connection_call(bus_.connection_.get(), question.whom.bus_name.c_str(), question.whom.path.c_str(),
                           question.interface, question.method, question.arguments,
                           G_VARIANT_TYPE(question.answer_type), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           static_cast<int>(bus_.patience_.count()), nullptr, Asked::on_answer, &asked);
}

void AccessibilityBus::Questions::wait_for_answers() {
    while (open_ > 0)
        g_main_context_iteration(context_, TRUE);
}

void AccessibilityBus::Questions::take_answers() {
    wait_for_answers();
    for (const Asked& asked : asked_) {
        if (asked.error != nullptr)
            throw LostSight(asked.error->message,
                            g_error_matches(asked.error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE);
        asked.taker(asked.answer);
    }
    asked_.clear();
}

void AccessibilityBus::ask(const Question& question, const Taker& taker) const {
    Questions questions(*this);
    questions.ask(question, taker);
    questions.take_answers();
}

} // namespace station
