#include "model/ncp_requester.h"

#include <unistd.h>

namespace {

constexpr const char* event_signal = "ncp_event";
constexpr int start_attempts = 20;
constexpr useconds_t start_interval_microseconds = 500'000;

} // namespace

void ncp_requester::register_callback(DBusSignalCB handler, void* user_data) {
    listeners.try_emplace(handler, user_data);
}

void ncp_requester::unregister_callback(DBusSignalCB handler) { listeners.erase(handler); }

void ncp_requester::start() {
    LOG_ERROR("start ncp request");
    int attempts_left = start_attempts;
    while (!client.IsInitialized()) {
        client.Init();
        usleep(start_interval_microseconds);
        if (--attempts_left == 0) {
            LOG_ERROR("Fail to Init Dubs Client");
            return;
        }
    }
    client.RegisterDBusSignalCB(event_signal, ncp_event_callback, this);
    LOG_ERROR("Success to Init Dbus");
}

void ncp_requester::stop() {
    LOG_ERROR("stop ncp requester");
    if (!client.IsInitialized()) {
        LOG_ERROR("Not yet Started");
        return;
    }
    client.UnregisterDBusSignalCB(event_signal, ncp_event_callback);
    client.Deinit();
    LOG_ERROR("Success to Deinit Dbus");
}

void ncp_requester::ncp_event_callback(const std::string& event_text, void* requester) {
    // Iterate over a copy: a listener may remove itself or others.
    const auto current = static_cast<ncp_requester*>(requester)->listeners;
    for (const auto& [handler, user_data] : current)
        handler(event_text, user_data);
}

// Sends a command whose reply is only a result code. Logs with the calling operation as the origin.
bool ncp_requester::command(const char* method, std::optional<int> argument = {},
                            const char* operation = __builtin_FUNCTION()) {
    g_autoptr(GVariant) reply = nullptr;
    GVariant* const parameters = argument ? g_variant_new("(i)", *argument) : nullptr;
    if (!call(LOG_ORIGIN(operation), method, parameters, "(i)", reply))
        return false;
    int result = 0;
    g_variant_get(reply, "(i)", &result);
    return check_result(result);
}

bool ncp_requester::ember_start(int test_mode) { return command("ember_start", test_mode); }
bool ncp_requester::ember_stop() { return command("ember_stop"); }
bool ncp_requester::ember_set_channel(int channel) { return command("ember_set_channel", channel); }
bool ncp_requester::ember_set_power(int power) { return command("ember_set_power", power); }
bool ncp_requester::ember_start_stream() { return command("ember_start_stream"); }
bool ncp_requester::ember_stop_stream() { return command("ember_stop_stream"); }
bool ncp_requester::ember_reset_rx_statistics() { return command("ember_reset_rx_statistics"); }

bool ncp_requester::ember_get_rx_statistics(std::string& statistics) {
    const LogOrigin operation = LOG_ORIGIN(__func__);
    g_autoptr(GVariant) reply = nullptr;
    if (!call(operation, "ember_get_rx_statistics", nullptr, "(si)", reply))
        return false;
    const char* text = nullptr; // borrowed from the reply
    int result = 0;
    g_variant_get(reply, "(&si)", &text, &result);
    statistics = text;
    LOG_ERROR_AT(operation, "RX statistics [%s]", statistics.c_str());
    return check_result(result);
}

// Checks that the reply has the given type.
bool ncp_requester::call(const LogOrigin& operation, const char* method, GVariant* parameters,
                         const char* reply_type, GVariant*& reply) {
    LOG_ERROR_AT(operation, "%s", method);
    if (!client.ProcessSyncCall(method, parameters, reply)) {
        LOG_ERROR_AT(operation, "Fail to call %s", method);
        return false;
    }
    if (!g_variant_is_of_type(reply, G_VARIANT_TYPE(reply_type))) {
        LOG_ERROR_AT(operation, "Reply of %s has the type %s, expected %s", method,
                     g_variant_get_type_string(reply), reply_type);
        return false;
    }
    return true;
}

bool ncp_requester::check_result(int result) {
    LOG_ERROR("Result = %d", result);
    return result == 0;
}
