#include "accessibility.h"

#include "efl_1_26/application/accessibility_bridge.h"
#include "platform/log.h"
#include "session_bus.h"

#include <Elementary.h>
#include <gio/gio.h>
#include <utility>

namespace platform {
namespace {

/** When to check whether the bridge has connected; much longer than the bridge's time-out for the bus address. */
constexpr unsigned connection_milliseconds = 1000;

GDBusProxy* status = nullptr;    // org.a11y.Status
GCancellable* attempt = nullptr; // the next attempt cancels it
bool is_recheck_pending = false;

/** Logs an error, unless the attempt was cancelled. */
void log_failure(const GError* error) {
    if (error && !g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no accessibility: %s",
                     error->message);
}

void apply();

void bus_connected(GObject* /*source*/, GAsyncResult* result, gpointer /*data*/) {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GDBusConnection) bus = g_dbus_connection_new_for_address_finish(result, &error);
    log_failure(error);
    if (!bus)
        return;
    elm_config_atspi_mode_set(EINA_FALSE);
    elm_config_atspi_mode_set(EINA_TRUE);
    const auto recheck = [](gpointer /*data*/) -> gboolean {
        is_recheck_pending = false;
        apply();
        return G_SOURCE_REMOVE;
    };
    if (!std::exchange(is_recheck_pending, true))
        g_timeout_add(connection_milliseconds, recheck, nullptr);
}

void address_received(GObject* /*source*/, GAsyncResult* result, gpointer /*data*/) {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_proxy_call_finish(status, result, &error);
    log_failure(error);
    if (!reply || !g_variant_is_of_type(reply, G_VARIANT_TYPE("(s)")))
        return;
    const char* address = nullptr;
    g_variant_get(reply, "(&s)", &address);
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(address, flags, nullptr, attempt, bus_connected, nullptr);
}

bool is_screen_reader_enabled() {
    g_autoptr(GVariant) value = g_dbus_proxy_get_cached_property(status, "ScreenReaderEnabled");
    return value && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
}

void apply() {
    g_cancellable_cancel(attempt);
    g_clear_object(&attempt);
    attempt = g_cancellable_new();
    if (!is_screen_reader_enabled())
        elm_config_atspi_mode_set(EINA_FALSE);
    else if (!bridge_is_connected())
        g_dbus_proxy_call(status, "org.a11y.Bus.GetAddress", nullptr, G_DBUS_CALL_FLAGS_NONE, G_MAXINT,
                          attempt, address_received, nullptr);
}

} // namespace

void follow_screen_reader() {
    if (!has_session_bus())
        return;
    const auto created = [](GObject* /*source*/, GAsyncResult* result, gpointer /*data*/) {
        g_autoptr(GError) error = nullptr;
        status = g_dbus_proxy_new_for_bus_finish(result, &error);
        log_failure(error);
        if (!status)
            return;
        g_signal_connect(status, "g-properties-changed", G_CALLBACK(apply), nullptr);
        apply();
    };
    // Do not start the service: if it is not running, there is no screen reader.
    g_dbus_proxy_new_for_bus(G_BUS_TYPE_SESSION, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr,
                             "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status", nullptr, created, nullptr);
}

} // namespace platform
