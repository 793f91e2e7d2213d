/** A limit on GIO calls that would otherwise wait for a silent peer. */
#pragma once

#include "object_pointer.h"

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <mutex>
#include <thread>

namespace platform {

/** Cancels its cancellable when the time is over, unless it goes first. */
class TimeLimit {
public:
    explicit TimeLimit(std::chrono::milliseconds limit)
        : thread_([this, limit](const std::stop_token& stop) {
              std::unique_lock lock(mutex_);
              const bool in_time =
                  over_.wait_for(lock, stop, limit, [&stop] { return stop.stop_requested(); });
              if (!in_time)
                  g_cancellable_cancel(cancellable_.get());
          }) {}

    /** What the calls to be limited take. */
    [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

private:
    ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    std::mutex mutex_;
    std::condition_variable_any over_;
    std::jthread thread_; // last: it uses the others and is joined first
};

} // namespace platform
