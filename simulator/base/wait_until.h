/** Polling. */
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace simulator {

/** Polls a condition every 5 ms until it is true. @return false on time-out. */
inline bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace simulator
