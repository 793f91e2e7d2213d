/** The truth about the simulated radio. */
#pragma once

#include <cstdint>
#include <string>

namespace station {

struct RadioState {
    std::string mode; /**< "off", "tx" or "rx" */
    int channel = 0;  /**< 11 to 26 */
    int power = 0;    /**< 0 to 20 */
    bool streams = false;
    std::int64_t received = 0; /**< packets since the start or the last reset of the count */
};

/** Asks the radio module; throws std::runtime_error when it does not answer. */
RadioState radio_state();

} // namespace station
