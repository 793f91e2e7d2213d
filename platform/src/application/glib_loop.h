/** GLib's default main context inside Ecore's main loop. */
#pragma once

#include <Ecore.h>

namespace platform {

/**
 * While it lives, Ecore's main loop waits for GLib's default context too and dispatches it.
 *
 * Debian's EFL is built without GLib support (`ecore_main_loop_glib_integrate` answers false), so Ecore is
 * given a select function that polls the descriptors and time-outs of both. Nothing is woken at intervals:
 * the wait ends when a descriptor of either is ready or the nearest time-out of either is over. A flood of D-Bus
 * messages gets a share of each turn of the loop, so that keys get theirs.
 */
class GlibLoop {
public:
    GlibLoop();
    ~GlibLoop();
    GlibLoop(const GlibLoop&) = delete;
    GlibLoop& operator=(const GlibLoop&) = delete;

private:
    Ecore_Select_Function previous_;
    bool owns_context_;
};

} // namespace platform
