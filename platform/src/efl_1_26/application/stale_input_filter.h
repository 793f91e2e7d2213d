/** Drops input that was meant for an older picture. */
#pragma once

#include "application/ecore_handlers.h"

#include <array>
#include <chrono>
#include <glib.h>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/**
 * While it lives, drops stale input: a key, mouse button or wheel that was pressed before the end of a freeze, a
 * stretch of more than a quarter of a second in which the main loop did not turn. The operator meant what the
 * screen showed during the freeze, not what it shows afterwards.
 *
 * The red key is delivered: it does not act on the page, but raises the window. Releases are delivered too.
 *
 * The time between the main loop's going to wait and its waking does not count, and that from the making of
 * this object to the first wait does.
 */
class StaleInputFilter {
public:
    StaleInputFilter();

private:
    using Clock = std::chrono::steady_clock;
    struct Watch;
    struct DestroyWatch {
        void operator()(GSource* watch) const;
    };
    struct FreezeEnd {
        std::optional<unsigned> server_time;
        Clock::time_point time;
    };

    static gboolean about_to_wait(GSource* watch, int* timeout);
    static gboolean woken(GSource* watch);
    static Eina_Bool drop_if_stale(void* self, int type, void* event);
    [[nodiscard]] bool is_stale(unsigned server_time) const;

    Clock::time_point woken_ = Clock::now();
    FreezeEnd last_freeze_{};
    std::string dropped_last_; // in it: a held key is logged once
    std::unique_ptr<GSource, DestroyWatch> watch_;
    std::array<OwnedEventHandler, 3> handlers_;
};

} // namespace platform
