#include "glib_loop.h"

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <glib.h>
#include <optional>
#include <poll.h>
#include <sys/select.h>
#include <sys/time.h>
#include <utility>
#include <vector>

namespace platform {
namespace {

// GLib promises that its descriptor records can be handed to poll(2) as they are.
static_assert(sizeof(GPollFD) == sizeof(pollfd) && offsetof(GPollFD, fd) == offsetof(pollfd, fd) &&
              offsetof(GPollFD, events) == offsetof(pollfd, events) &&
              offsetof(GPollFD, revents) == offsetof(pollfd, revents));

/** Ecore's three sets, each of which may be null. */
struct EcoreSets {
    fd_set* read;
    fd_set* write;
    fd_set* except;

    void clear() const {
        for (fd_set* set : {read, write, except})
            if (set)
                FD_ZERO(set);
    }
};

bool contains(const fd_set* set, int descriptor) { return set && FD_ISSET(descriptor, set); }

/** What GLib waits for, at the priority it would dispatch. */
struct GlibWait {
    int priority = 0;
    int milliseconds = -1; /**< until the nearest time-out, -1 for ever */
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

void append(std::vector<GPollFD>& descriptors, int count, const EcoreSets& sets) {
    for (int descriptor = 0; descriptor < count; ++descriptor) {
        unsigned events = 0;
        events |= contains(sets.read, descriptor) ? POLLIN : 0U;
        events |= contains(sets.write, descriptor) ? POLLOUT : 0U;
        events |= contains(sets.except, descriptor) ? POLLPRI : 0U;
        if (events != 0)
            descriptors.push_back({.fd = descriptor, .events = static_cast<gushort>(events), .revents = 0});
    }
}

/** The shorter of GLib's wait and Ecore's (null for ever); nothing means for ever. */
std::optional<timespec> shorter_wait(int glib_milliseconds, const timeval* ecore) {
    if (glib_milliseconds < 0 && !ecore)
        return std::nullopt;
    const timespec glib{.tv_sec = glib_milliseconds / 1000, .tv_nsec = (glib_milliseconds % 1000) * 1000000L};
    if (!ecore)
        return glib;
    const timespec own{.tv_sec = ecore->tv_sec, .tv_nsec = ecore->tv_usec * 1000L};
    if (glib_milliseconds < 0 || own.tv_sec < glib.tv_sec ||
        (own.tv_sec == glib.tv_sec && own.tv_nsec < glib.tv_nsec))
        return own;
    return glib;
}

/** Puts one ready descriptor back into Ecore's sets, as select(2) would; returns how many sets it is in. */
int give_back(const GPollFD& polled, const EcoreSets& sets) {
    int bits = 0;
    const auto give = [&](unsigned asked, unsigned ready, fd_set* set) {
        if (!(polled.events & asked) || !(polled.revents & ready))
            return;
        FD_SET(polled.fd, set);
        ++bits;
    };
    give(POLLIN, POLLIN | POLLHUP | POLLERR, sets.read);
    give(POLLOUT, POLLOUT | POLLERR, sets.write);
    give(POLLPRI, POLLPRI, sets.except);
    return bits;
}

/** Answers for Ecore's descriptors, those from `first` on, as select(2) does. */
int answer(const std::vector<GPollFD>& polled, std::size_t first, const EcoreSets& sets) {
    sets.clear();
    int bits = 0;
    for (std::size_t index = first; index < polled.size(); ++index) {
        if (polled[index].revents & POLLNVAL) {
            errno = EBADF; // Ecore then looks for the closed descriptor and drops its handler
            return -1;
        }
        bits += give_back(polled[index], sets);
    }
    return bits;
}

/** What the sources that are ready together may take of a turn of the loop, before the rest waits for the next. */
constexpr gint64 share_of_a_turn_microseconds = 20'000;

gboolean dispatch_within_share(GSource* source, GSourceFunc callback, gpointer data);

// Replaced before there is another thread.
const auto dispatch_of_idle_source = std::exchange(g_idle_funcs.dispatch, dispatch_within_share);

/**
 * GDBus brings each signal and each answer in an idle source of its own, and GLib dispatches all that are ready:
 * a flood of signals would keep keys and deleted objects waiting. A context that is prepared during a dispatch, as
 * by a loop inside a callback, drops the list of what it was about to dispatch, and finds it ready again.
 */
gboolean dispatch_within_share(GSource* source, GSourceFunc callback, gpointer data) {
    GMainContext* const context = g_source_get_context(source);
    const gint64 begin = g_source_get_time(source);
    const gboolean stays = dispatch_of_idle_source(source, callback, data);
    if (context == g_main_context_default() && g_get_monotonic_time() - begin > share_of_a_turn_microseconds)
        g_main_context_prepare(context, nullptr);
    return stays;
}

int select_with_glib(int count, fd_set* read, fd_set* write, fd_set* except, timeval* timeout) {
    if (!eina_main_loop_is())
        return select(count, read, write, except,
                      timeout); // another thread's Ecore loop: GLib is none of its business
    const EcoreSets sets{.read = read, .write = write, .except = except};
    GMainContext* const context = g_main_context_default();
    GlibWait glib(context);
    auto& descriptors = glib.descriptors;
    const std::size_t glib_count = descriptors.size();
    append(descriptors, count, sets);

    const auto wait = shorter_wait(glib.milliseconds, timeout);
    const int ready = ppoll(reinterpret_cast<pollfd*>(descriptors.data()), descriptors.size(),
                            wait ? &*wait : nullptr, nullptr);
    const int poll_error = errno;
    if (ready < 0)
        for (auto& descriptor : descriptors)
            descriptor.revents = 0;
    // A prepared context is always checked, also after a signal: a GLib time-out may be over all the same.
    if (g_main_context_check(context, glib.priority, descriptors.data(), static_cast<int>(glib_count))) {
        // Ecore sets its clock only after the select: an animation begun in a callback would be over at once.
        ecore_loop_time_set(ecore_time_get());
        g_main_context_dispatch(context);
    }
    if (ready < 0) {
        sets.clear();
        errno = poll_error;
        return -1;
    }
    return answer(descriptors, glib_count, sets);
}

} // namespace

// The context is owned for as long as Ecore polls it: only then does a source attached by another thread,
// such as a D-Bus signal from GDBus's worker, wake the poll.
GlibLoop::GlibLoop()
    : previous_(ecore_main_loop_select_func_get()),
      owns_context_(g_main_context_acquire(g_main_context_default())) {
    ecore_main_loop_select_func_set(select_with_glib);
}

GlibLoop::~GlibLoop() {
    ecore_main_loop_select_func_set(previous_);
    if (owns_context_)
        g_main_context_release(g_main_context_default());
}

} // namespace platform
