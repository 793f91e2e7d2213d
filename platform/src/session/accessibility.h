/** Elementary's accessibility bridge, switched by the session. */
#pragma once

#include "common/object_pointer.h"

#include <gio/gio.h>

namespace platform {

/** Keeps Elementary from switching its bridge on by itself, as ELM_ATSPI_MODE bids it: before Elementary is up. */
void leave_bridge_off();

/**
 * Switches Elementary's AT-SPI bridge on while the session says that a screen reader is there
 * (`ScreenReaderEnabled` of org.a11y.Status on the session bus), now and whenever that changes, and again until it
 * is on the accessibility bus.
 *
 * Measured with EFL 1.26.3: the bridge does nothing while the session does not say so; switched on late, or off and
 * on again, it shows windows made before it as well. It waits without a limit for its buses, so it is switched on
 * only when both have let in a connection of ours.
 */
class Accessibility {
public:
    /** Returns at once; the session is asked while the main loop runs, and may answer late. */
    Accessibility();
    ~Accessibility();
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;

private:
    void follow(GDBusProxy* status);
    void apply();
    void connect(const char* bus_address);
    void switch_on();

    // What is under way is cancelled by the next attempt: its callbacks then leave `this` alone.
    ObjectPointer<GCancellable> attempt_{g_cancellable_new()};
    ObjectPointer<GDBusProxy> status_;
    unsigned next_look_ = 0;
};

} // namespace platform
