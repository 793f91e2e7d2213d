#include "accessibility.h"

#include "efl_1_26/application/bridge_key_filter.h"
#include "platform/log.h"
#include "session_bus.h"

#include <Elementary.h>

#include <string>
#include <utility>

namespace platform {
namespace {

bool screen_reader_enabled(GDBusProxy* status) {
    g_autoptr(GVariant) value = g_dbus_proxy_get_cached_property(status, "ScreenReaderEnabled");
    return value && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
}

void log_no_accessibility(const char* reason) {
    __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no accessibility: %s", reason);
}

} // namespace

Accessibility::Accessibility(GDBusConnection* session_bus) {
    keep_out_bridge_key_filter();
    if (!session_bus)
        return;
    const auto created = +[](GObject* /*source*/, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        ObjectPointer<GDBusProxy> status(g_dbus_proxy_new_finish(result, &error));
        if (status)
            static_cast<Accessibility*>(self)->follow(std::move(status));
        else if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) // cancelled, `self` has gone
            log_no_accessibility(error->message);
    };
    // Not started for the purpose: where the accessibility service does not run, no reader does.
    g_dbus_proxy_new(session_bus, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr, "org.a11y.Bus",
                     "/org/a11y/bus", "org.a11y.Status", cancellable_.get(), created, this);
}

Accessibility::~Accessibility() {
    g_cancellable_cancel(cancellable_.get());
    if (status_)
        g_signal_handlers_disconnect_by_data(status_.get(), this);
}

void Accessibility::follow(ObjectPointer<GDBusProxy> status) {
    status_ = std::move(status);
    const auto changed =
        +[](GDBusProxy* /*status*/, GVariant* /*changed*/, const char* const* /*invalidated*/,
            gpointer self) { static_cast<Accessibility*>(self)->apply(); };
    g_signal_connect(status_.get(), "g-properties-changed", G_CALLBACK(changed), this);
    apply();
}

void Accessibility::apply() {
    const bool enabled = screen_reader_enabled(status_.get());
    if (enabled == static_cast<bool>(elm_config_atspi_mode_get()))
        return;
    if (!enabled) {
        elm_config_atspi_mode_set(EINA_FALSE);
        return;
    }
    const auto answered = +[](GObject* status, GAsyncResult* result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        g_autoptr(GVariant) reply = g_dbus_proxy_call_finish(G_DBUS_PROXY(status), result, &error);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) // `self` has gone
            return;
        const char* address = nullptr;
        if (reply && g_variant_is_of_type(reply, G_VARIANT_TYPE("(s)")))
            g_variant_get(reply, "(&s)", &address);
        if (address)
            static_cast<const Accessibility*>(self)->switch_on(address);
        else
            log_no_accessibility(error ? error->message : "no address");
    };
    g_dbus_proxy_call(status_.get(), "org.a11y.Bus.GetAddress", nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                      cancellable_.get(), answered, this);
}

void Accessibility::switch_on(const char* bus_address) const {
    std::string reason;
    if (!connect_in_time(bus_address, reason))
        log_no_accessibility(reason.c_str());
    else if (screen_reader_enabled(status_.get())) // still
        elm_config_atspi_mode_set(EINA_TRUE);
}

} // namespace platform
