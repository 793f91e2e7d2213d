/** Sees what passes the system bus, whoever sends it. */
#pragma once

#include "base/owned.h"
#include "drawing_watch.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

namespace bench {

class BusWatch {
public:
    /** @throws std::runtime_error without a system bus, or with one that lets nobody watch. */
    BusWatch();
    ~BusWatch();
    BusWatch(const BusWatch&) = delete;
    BusWatch& operator=(const BusWatch&) = delete;

    /** When the next call or signal of this name passed. @throws std::runtime_error when none does in ten seconds. */
    Clock::time_point next(const std::string& member);

private:
    struct Message {
        std::string member;
        Clock::time_point moment;
    };

    static GDBusMessage* on_message(GDBusConnection* bus, GDBusMessage* message, gboolean incoming,
                                    gpointer self);

    simulator::BusConnection bus_;
    guint filter_ = 0;
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<Message> messages_;
};

} // namespace bench
