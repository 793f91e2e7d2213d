#include "waiting.h"

#include <thread>

namespace station {

bool comes_true(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds look_interval{5};
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(look_interval);
    }
    return true;
}

} // namespace station
