#include "accessibility_bus.h"

#include "base/bus.h"

namespace simulator {
namespace {

Value ask_launcher(GDBusConnection* bus, const char* interface, const char* method, GVariant* arguments) {
    g_autoptr(GError) error = nullptr;
    Value answer(g_dbus_connection_call_sync(bus, "org.a11y.Bus", "/org/a11y/bus", interface, method,
                                             arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                                             &error));
    if (!answer)
        throw std::runtime_error(std::string("no accessibility bus: ") + error->message);
    return answer;
}

std::string session_bus_address() {
    g_autoptr(GError) error = nullptr;
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (address == nullptr)
        throw std::runtime_error(std::string("no session bus: ") + error->message);
    return address;
}

/** The answer to one question that is under way. */
struct Pending {
    std::size_t* open;
    Value answer;
    std::unique_ptr<GError, decltype(&g_error_free)> error{nullptr, g_error_free};

    static void on_answer(GObject* connection, GAsyncResult* result, gpointer data) {
        auto& pending = *static_cast<Pending*>(data);
        GError* error = nullptr;
        pending.answer.reset(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
        pending.error.reset(error);
        --*pending.open;
    }
};

} // namespace

void announce_screen_reader(bool is_there) {
    const BusConnection session = connect_to_bus(session_bus_address());
    ask_launcher(session.get(), "org.freedesktop.DBus.Properties", "Set",
                 g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled",
                               g_variant_new_boolean(is_there ? TRUE : FALSE)));
}

AccessibilityBus::AccessibilityBus(std::chrono::milliseconds patience) : patience_(patience) {
    announce_screen_reader(true);
    const BusConnection session = connect_to_bus(session_bus_address());
    const Value answer = ask_launcher(session.get(), "org.a11y.Bus", "GetAddress", nullptr);
    const char* address = nullptr;
    g_variant_get(answer.get(), "(&s)", &address);
    connection_ = connect_to_bus(address);
}

bool AccessibilityBus::is_connected() const {
    return g_dbus_connection_is_closed(connection_.get()) == FALSE;
}

void AccessibilityBus::ask(const std::vector<Question>& questions) const {
    std::vector<Pending> pending(questions.size());
    std::size_t open = questions.size();
    g_autoptr(GMainContext) context = g_main_context_new();
    g_main_context_push_thread_default(context); // the answers come here, whatever loop the caller has
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const Question& question = questions[i];
        pending[i].open = &open;
        g_dbus_connection_call(connection_.get(), question.whom.bus_name.c_str(), question.whom.path.c_str(),
                               question.interface, question.method, question.arguments,
                               G_VARIANT_TYPE(question.answer_type), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                               static_cast<int>(patience_.count()), nullptr, Pending::on_answer, &pending[i]);
    }
    while (open > 0)
        g_main_context_iteration(context, TRUE);
    g_main_context_pop_thread_default(context);
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const GError* const error = pending[i].error.get();
        if (error != nullptr)
            throw LostSight(error->message,
                            g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE);
        questions[i].take(pending[i].answer.get());
    }
}

} // namespace simulator
