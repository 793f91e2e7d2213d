#include "accessibility_bus.h"

namespace simulator {
namespace {

constexpr std::chrono::milliseconds start_limit{5000}; // of the launcher of the accessibility bus
const Accessible launcher{"org.a11y.Bus", "/org/a11y/bus"};

std::optional<Unanswered> failure_of(const GError* error) {
    return Unanswered{error->message, g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE};
}

/** Whoever wants it has gone then. */
bool is_cancelled(const GError* error) {
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

} // namespace

AccessibilityBus::AccessibilityBus(std::chrono::milliseconds patience)
    : patience_(patience), cancel_(g_cancellable_new()) {}

AccessibilityBus::~AccessibilityBus() { g_cancellable_cancel(cancel_.get()); }

void AccessibilityBus::call(GDBusConnection* bus, const Question& question, const Answered& answered) {
    const auto on_answer = +[](GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Answered> held(static_cast<Answered*>(data));
        g_autoptr(GError) error = nullptr;
        const Value answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
        if (!is_cancelled(error))
            (*held)(answer.get(), error);
    };
    g_dbus_connection_call(bus, question.whom.bus_name.c_str(), question.whom.path.c_str(),
                           question.interface, question.method, question.arguments,
                           G_VARIANT_TYPE(question.answer_type), G_DBUS_CALL_FLAGS_NONE,
                           static_cast<int>((bus == session_.get() ? start_limit : patience_).count()),
                           cancel_.get(), on_answer, std::make_unique<Answered>(answered).release());
}

void AccessibilityBus::open(const std::string& address,
                            const std::function<void(BusConnection, const GError*)>& opened) {
    using Opened = std::function<void(BusConnection, const GError*)>;
    const auto on_opened = +[](GObject* /*source*/, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Opened> held(static_cast<Opened*>(data));
        g_autoptr(GError) error = nullptr;
        BusConnection connection(g_dbus_connection_new_for_address_finish(result, &error));
        if (!is_cancelled(error))
            (*held)(std::move(connection), error);
    };
    g_dbus_connection_new_for_address(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, cancel_.get(), on_opened, std::make_unique<Opened>(opened).release());
}

void AccessibilityBus::connect(const Done& done) {
    if (connection_ && g_dbus_connection_is_closed(connection_.get()) == FALSE)
        return done({});
    g_autoptr(GError) error = nullptr;
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (address == nullptr)
        return done(Unanswered{std::string("no session bus: ") + error->message});
    open(address, [this, done](BusConnection session, const GError* open_error) {
        if (open_error != nullptr)
            return done(failure_of(open_error));
        session_ = std::move(session);
        announce(done);
    });
}

void AccessibilityBus::announce(const Done& done) {
    const Question set{
        launcher,
        "org.freedesktop.DBus.Properties",
        "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled", g_variant_new_boolean(TRUE)),
        "()",
        nullptr};
    const Question get_address{launcher, "org.a11y.Bus", "GetAddress", nullptr, "(s)", nullptr};
    call(session_.get(), set, [](GVariant* /*answer*/, const GError* /*error*/) {}); // GetAddress reports it
    call(session_.get(), get_address, [this, done](GVariant* answer, const GError* error) {
        if (error != nullptr)
            return done(Unanswered{std::string("no accessibility bus: ") + error->message});
        const char* address = nullptr;
        g_variant_get(answer, "(&s)", &address);
        open(address, [this, done](BusConnection connection, const GError* open_error) {
            if (open_error != nullptr)
                return done(failure_of(open_error));
            connection_ = std::move(connection);
            done({});
        });
    });
}

void AccessibilityBus::ask(const std::vector<Question>& questions, const Done& done) {
    struct Open {
        std::size_t count;
        std::optional<Unanswered> failure;
    };
    if (questions.empty())
        return done({});
    const auto open = std::make_shared<Open>(Open{questions.size(), {}});
    for (const Question& question : questions)
        call(connection_.get(), question,
             [open, done, take = question.take](GVariant* answer, const GError* error) {
                 if (error != nullptr && !open->failure)
                     open->failure = failure_of(error);
                 if (error == nullptr)
                     take(answer);
                 if (--open->count == 0)
                     done(open->failure);
             });
}

} // namespace simulator
