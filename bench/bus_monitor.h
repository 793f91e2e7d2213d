/** Reports the messages that pass the system bus, whichever program sends them. */
#pragma once

#include "base/owned.h"
#include "measurement.h"

namespace bench {

class BusMonitor {
public:
    /** @throws std::runtime_error without a system bus, or with one that does not let itself be monitored. */
    BusMonitor();
    ~BusMonitor();
    BusMonitor(const BusMonitor&) = delete;
    BusMonitor& operator=(const BusMonitor&) = delete;

    /** Waits for the next call or signal of a name. @return when it passed. @throws std::runtime_error after ten seconds. */
    Clock::time_point next(const std::string& member);

private:
    GAsyncQueue* messages_;
    simulator::BusConnection bus_;
    guint filter_ = 0;
};

} // namespace bench
