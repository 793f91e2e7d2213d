/** Presses on a picture that stands still. */
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
 * While it lives, a key, button or wheel that was pressed before the end of a stretch of more than a quarter
 * of a second in which the main loop did not turn reaches nobody: the operator meant what the screen showed,
 * not what stands there by now. Releases are delivered.
 *
 * The time between the main loop's going to wait and its waking does not count, and that from the making of
 * this object to the first wait does.
 */
class StillPicture {
public:
    StillPicture();

private:
    using Clock = std::chrono::steady_clock;
    struct Watch;
    struct Removal {
        void operator()(GSource* watch) const;
    };
    struct End {
        std::optional<unsigned> server_time;
        Clock::time_point time;
    };

    static gboolean about_to_wait(GSource* watch, int* timeout);
    static gboolean woken(GSource* watch);
    static Eina_Bool judge(void* self, int type, void* event);
    [[nodiscard]] bool stood_still_at(unsigned server_time) const;

    Clock::time_point woken_ = Clock::now();
    End end_{};                // of the newest stretch
    std::string dropped_last_; // in it: a held key is logged once
    std::unique_ptr<GSource, Removal> watch_;
    std::array<OwnedEventHandler, 3> handlers_;
};

} // namespace platform
