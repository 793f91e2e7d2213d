/** Timers and watched descriptors of the default main context; destroying the EventSource removes them. */
#pragma once

#include "owned.h"

#include <glib-unix.h>

#include <functional>

namespace simulator {

using Action = std::function<void()>;

inline void release_action(gpointer action) {
    const std::unique_ptr<Action> held(static_cast<Action*>(action));
}

inline gboolean run_action(gpointer action) {
    (*static_cast<Action*>(action))();
    return G_SOURCE_CONTINUE;
}

/** Calls `action` at this interval. */
inline EventSource call_every(guint milliseconds, Action action) {
    return EventSource(g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, run_action,
                                          std::make_unique<Action>(std::move(action)).release(),
                                          release_action));
}

/** Calls `action` whenever the descriptor is readable or has hung up. */
inline EventSource call_when_readable(int descriptor, Action action) {
    const auto ready =
        +[](gint /*descriptor*/, GIOCondition /*condition*/, gpointer held) { return run_action(held); };
    return EventSource(g_unix_fd_add_full(
        G_PRIORITY_DEFAULT, descriptor, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), ready,
        std::make_unique<Action>(std::move(action)).release(), release_action));
}

} // namespace simulator
