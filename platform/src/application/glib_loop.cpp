#include "glib_loop.h"

#include <Ecore.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <glib.h>
#include <sys/select.h>
#include <tuple>
#include <utility>
#include <vector>

namespace platform {
namespace {

/** What GLib waits for: descriptors and a time-out, of sources with the priority to be dispatched next. */
struct GlibWait {
    int priority = 0;
    int milliseconds = -1; /**< until the nearest time-out; -1 if there is none */
    std::vector<GPollFD> descriptors;

    explicit GlibWait(GMainContext* context) {
        g_main_context_prepare(context, &priority);
        int count = 0;
        do {
            descriptors.resize(static_cast<std::size_t>(count));
            count = g_main_context_query(context, priority, &milliseconds, descriptors.data(), count);
        } while (static_cast<std::size_t>(count) > descriptors.size());
        descriptors.resize(static_cast<std::size_t>(count));
    }
};

/** The select(2) set for each kind of event. */
using Sets = std::array<std::pair<unsigned, fd_set*>, 3>;

/** Adds the descriptors to the sets; `count` becomes at least the highest descriptor plus one. */
void add(const std::vector<GPollFD>& descriptors, const Sets& sets, int& count) {
    for (const GPollFD& wanted : descriptors) {
        count = std::max(count, wanted.fd + 1);
        for (const auto& [event, set] : sets)
            if ((wanted.events & event) != 0)
                FD_SET(wanted.fd, set);
    }
}

/** Marks the ready descriptors. @return the number of their entries in the sets. */
int take_ready(std::vector<GPollFD>& descriptors, const Sets& sets) {
    int taken = 0;
    for (GPollFD& polled : descriptors)
        for (const auto& [event, set] : sets)
            if ((polled.events & event) != 0 && FD_ISSET(polled.fd, set)) {
                polled.revents = static_cast<gushort>(polled.revents | event);
                ++taken;
            }
    return taken;
}

/** Time limit for GLib's ready sources per loop iteration; the rest wait for the next iteration. */
constexpr gint64 longest_dispatch_microseconds = 20'000;

gboolean dispatch_within_limit(GSource* source, GSourceFunc callback, gpointer data);

// GLib's function, which is replaced before other threads exist.
const auto dispatch_of_idle_source = std::exchange(g_idle_funcs.dispatch, dispatch_within_limit);

/**
 * GDBus delivers each signal and reply in its own idle source, and GLib dispatches all ready sources, so a flood of
 * signals would delay keys and the freeing of deleted objects. Preparing a context during a dispatch, as a nested
 * loop does, clears the list of sources to dispatch; the next iteration finds these sources ready again.
 */
gboolean dispatch_within_limit(GSource* source, GSourceFunc callback, gpointer data) {
    GMainContext* const context = g_source_get_context(source);
    const gint64 begin = g_source_get_time(source);
    const gboolean stays = dispatch_of_idle_source(source, callback, data);
    if (context == g_main_context_default() && g_get_monotonic_time() - begin > longest_dispatch_microseconds)
        g_main_context_prepare(context, nullptr);
    return stays;
}

// GLib and Ecore share no descriptor: Ecore waits for its own with epoll, and selects only the epoll descriptor.
int select_with_glib(int count, fd_set* read, fd_set* write, fd_set* except, timeval* timeout) {
    if (!eina_main_loop_is())
        return select(count, read, write, except,
                      timeout); // another thread's Ecore loop does not dispatch GLib
    GMainContext* const context = g_main_context_default();
    GlibWait glib(context);
    const Sets sets{{{G_IO_IN, read}, {G_IO_OUT, write}, {G_IO_PRI, except}}};
    add(glib.descriptors, sets, count);
    timeval glib_timeout{.tv_sec = glib.milliseconds / 1000, .tv_usec = (glib.milliseconds % 1000) * 1000L};
    if (glib.milliseconds >= 0 && (!timeout || std::tie(glib_timeout.tv_sec, glib_timeout.tv_usec) <
                                                   std::tie(timeout->tv_sec, timeout->tv_usec)))
        timeout = &glib_timeout;

    int ready = select(count, read, write, except, timeout);
    const int select_error = errno;
    if (ready > 0)
        ready -= take_ready(glib.descriptors, sets);
    // Always check a prepared context, even after a signal: a GLib time-out may have expired.
    if (g_main_context_check(context, glib.priority, glib.descriptors.data(),
                             static_cast<int>(glib.descriptors.size()))) {
        // Ecore updates its clock only after the select; with the old time, a new animation would end at once.
        ecore_loop_time_set(ecore_time_get());
        g_main_context_dispatch(context);
    }
    errno = select_error;
    return ready;
}

} // namespace

// Owns the context permanently: only then does a source attached by another thread, such as a D-Bus signal from GDBus's
// worker, interrupt the wait.
void dispatch_glib_in_ecore() {
    g_main_context_acquire(g_main_context_default());
    ecore_main_loop_select_func_set(select_with_glib);
}

} // namespace platform
