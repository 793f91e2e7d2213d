/** Timers and watched descriptors of the main loop that end with their owner. */
#pragma once

#include <glib-unix.h>

#include <functional>
#include <memory>
#include <utility>

namespace simulator {

/** A source of the default main context; destroying or resetting it stops it. */
class EventSource {
public:
    EventSource() = default;
    EventSource(EventSource&& other) noexcept : number_(std::exchange(other.number_, 0)) {}
    EventSource& operator=(EventSource&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.number_, 0));
        return *this;
    }
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    ~EventSource() { reset(); }

    /** Calls `action` every so many milliseconds. */
    static EventSource every(guint milliseconds, std::function<void()> action) {
        auto held = std::make_unique<std::function<void()>>(std::move(action));
        return EventSource(
            g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, tick, held.release(), release));
    }

    /** Calls `action` each time the descriptor can be read or has hung up. */
    static EventSource when_readable(int descriptor, std::function<void()> action) {
        auto held = std::make_unique<std::function<void()>>(std::move(action));
        return EventSource(g_unix_fd_add_full(G_PRIORITY_DEFAULT, descriptor,
                                              static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), ready,
                                              held.release(), release));
    }

    void reset(guint number = 0) {
        if (number_ != 0)
            g_source_remove(number_);
        number_ = number;
    }
    explicit operator bool() const { return number_ != 0; }

private:
    explicit EventSource(guint number) : number_(number) {}

    static gboolean tick(gpointer action) {
        (*static_cast<std::function<void()>*>(action))();
        return G_SOURCE_CONTINUE;
    }
    static gboolean ready(gint /*descriptor*/, GIOCondition /*condition*/, gpointer action) {
        return tick(action);
    }
    static void release(gpointer action) {
        const std::unique_ptr<std::function<void()>> held(static_cast<std::function<void()>*>(action));
    }

    guint number_ = 0;
};

} // namespace simulator
