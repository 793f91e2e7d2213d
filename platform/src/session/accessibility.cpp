#include "accessibility.h"

#include "efl_1_26/application/bridge_connection.h"
#include "efl_1_26/application/bridge_key_filter.h"
#include "platform/log.h"
#include "session_bus.h"

#include <Elementary.h>

#include <utility>

namespace platform {
namespace {

/** Far longer than the bridge gives the address of the bus. */
constexpr unsigned connection_milliseconds = 1000;

bool screen_reader_enabled(GDBusProxy* status) {
    g_autoptr(GVariant) value = g_dbus_proxy_get_cached_property(status, "ScreenReaderEnabled");
    return value && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
}

/** Whether the one who asked has not gone; an error is then logged. */
bool is_wanted(const GError* error) {
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return false;
    if (error)
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no accessibility: %s",
                     error->message);
    return true;
}

} // namespace

void leave_bridge_off() { g_unsetenv("ELM_ATSPI_MODE"); }

Accessibility::Accessibility() {
    keep_out_bridge_key_filter();
    if (!has_session_bus())
        return;
    const auto created = [](GObject* /*source*/, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        GDBusProxy* const status = g_dbus_proxy_new_for_bus_finish(result, &error);
        if (is_wanted(error) && status)
            static_cast<Accessibility*>(self)->follow(status);
    };
    // Not started for the purpose: where the accessibility service does not run, no reader does.
    g_dbus_proxy_new_for_bus(G_BUS_TYPE_SESSION, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr,
                             "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status", attempt_.get(), created,
                             this);
}

Accessibility::~Accessibility() {
    g_cancellable_cancel(attempt_.get());
    if (status_)
        g_signal_handlers_disconnect_by_data(status_.get(), this);
    if (next_look_ != 0)
        g_source_remove(next_look_);
}

void Accessibility::follow(GDBusProxy* status) {
    status_.reset(status);
    const auto changed =
        +[](GDBusProxy* /*status*/, GVariant* /*changed*/, const char* const* /*invalidated*/,
            gpointer self) { static_cast<Accessibility*>(self)->apply(); };
    g_signal_connect(status, "g-properties-changed", G_CALLBACK(changed), this);
    apply();
}

void Accessibility::apply() {
    g_cancellable_cancel(attempt_.get());
    attempt_.reset(g_cancellable_new());
    if (!screen_reader_enabled(status_.get()))
        elm_config_atspi_mode_set(EINA_FALSE);
    else if (!bridge_is_connected())
        g_dbus_proxy_call(
            status_.get(), "org.a11y.Bus.GetAddress", nullptr, G_DBUS_CALL_FLAGS_NONE, G_MAXINT,
            attempt_.get(),
            [](GObject* status, GAsyncResult* result, gpointer self) {
                g_autoptr(GError) error = nullptr;
                g_autoptr(GVariant) reply = g_dbus_proxy_call_finish(G_DBUS_PROXY(status), result, &error);
                if (is_wanted(error) && reply && g_variant_is_of_type(reply, G_VARIANT_TYPE("(s)"))) {
                    g_autoptr(GVariant) address = g_variant_get_child_value(reply, 0);
                    static_cast<Accessibility*>(self)->connect(g_variant_get_string(address, nullptr));
                }
            },
            this);
}

void Accessibility::connect(const char* bus_address) {
    const auto connected = [](GObject* /*source*/, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        const ObjectPointer<GDBusConnection> bus(g_dbus_connection_new_for_address_finish(result, &error));
        if (is_wanted(error) && bus)
            static_cast<Accessibility*>(self)->switch_on();
    };
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(bus_address, flags, nullptr, attempt_.get(), connected, this);
}

void Accessibility::switch_on() {
    elm_config_atspi_mode_set(EINA_FALSE);
    elm_config_atspi_mode_set(EINA_TRUE);
    const auto look = [](gpointer data) -> gboolean {
        auto* const self = static_cast<Accessibility*>(data);
        self->next_look_ = 0;
        self->apply();
        return G_SOURCE_REMOVE;
    };
    if (next_look_ == 0)
        next_look_ = g_timeout_add(connection_milliseconds, look, this);
}

} // namespace platform
