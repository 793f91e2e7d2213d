#include "wait_until.h"

#include <thread>

namespace simulator {

bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds look_interval{5};
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(look_interval);
    }
    return true;
}

} // namespace simulator
