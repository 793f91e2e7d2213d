#include "accessibility.h"

#include "bridge_key_filter.h"
#include "platform/log.h"
#include "session_bus.h"
#include "time_limit.h"

#include <Elementary.h>

namespace platform {
namespace {

ObjectPointer<GDBusProxy> watch_status(GDBusConnection* session_bus) {
    if (!session_bus)
        return nullptr;
    const TimeLimit limit(session_bus_limit);
    g_autoptr(GError) error = nullptr;
    // Not started for the purpose: where the accessibility service does not run, no reader does.
    ObjectPointer<GDBusProxy> status(g_dbus_proxy_new_sync(session_bus, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START,
                                                           nullptr, "org.a11y.Bus", "/org/a11y/bus",
                                                           "org.a11y.Status", limit.cancellable(), &error));
    if (!status)
        __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "no accessibility: %s",
                     error->message);
    return status;
}

bool screen_reader_enabled(GDBusProxy* status) {
    g_autoptr(GVariant) value = g_dbus_proxy_get_cached_property(status, "ScreenReaderEnabled");
    return value && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
}

} // namespace

Accessibility::Accessibility(GDBusConnection* session_bus) : status_(watch_status(session_bus)) {
    keep_out_bridge_key_filter();
    if (!status_)
        return;
    const auto changed =
        +[](GDBusProxy* /*status*/, GVariant* /*changed*/, const char* const* /*invalidated*/,
            gpointer self) { static_cast<const Accessibility*>(self)->apply(); };
    g_signal_connect(status_.get(), "g-properties-changed", G_CALLBACK(changed), this);
    apply();
}

Accessibility::~Accessibility() {
    if (status_)
        g_signal_handlers_disconnect_by_data(status_.get(), this);
}

void Accessibility::apply() const {
    const bool enabled = screen_reader_enabled(status_.get());
    if (enabled != static_cast<bool>(elm_config_atspi_mode_get()))
        elm_config_atspi_mode_set(enabled);
}

} // namespace platform
