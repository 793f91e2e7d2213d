/** Elementary's accessibility bridge, switched by the session. */
#pragma once

#include "application/object_pointer.h"

#include <gio/gio.h>

namespace platform {

/**
 * Switches Elementary's AT-SPI bridge on while the session says that a screen reader is there
 * (`ScreenReaderEnabled` of org.a11y.Status on the session bus), now and whenever that changes.
 *
 * Without a session bus nothing is done, and ELM_ATSPI_MODE alone decides. Measured with EFL 1.26.3: switched
 * on late, or off and on again, the bridge shows windows made before it as well. It waits without a limit for
 * the accessibility bus, so that one which does not answer is left alone.
 */
class Accessibility {
public:
    /** Returns at once; the session is asked while the main loop runs. `session_bus` may be null. */
    explicit Accessibility(GDBusConnection* session_bus);
    ~Accessibility();
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;

private:
    void follow(ObjectPointer<GDBusProxy> status);
    void apply();
    void switch_on(const char* bus_address) const;

    ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    ObjectPointer<GDBusProxy> status_;
};

} // namespace platform
