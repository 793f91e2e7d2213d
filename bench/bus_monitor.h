/** Reports the messages of all programs on the system bus. */
#pragma once

#include "base/owned.h"
#include "measurement.h"

namespace bench {

class BusMonitor {
public:
    /** @throws std::runtime_error without a system bus, or if it does not allow monitoring. */
    BusMonitor();
    ~BusMonitor();
    BusMonitor(const BusMonitor&) = delete;
    BusMonitor& operator=(const BusMonitor&) = delete;

    /** Waits for the next call or signal `member`. @return its time. @throws std::runtime_error after ten seconds. */
    Clock::time_point next(const std::string& member);

private:
    GAsyncQueue* messages_;
    simulator::BusConnection bus_;
    guint filter_ = 0;
};

} // namespace bench
