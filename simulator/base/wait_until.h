/** Waiting for what nobody announces. */
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace simulator {

/** Asks again and again, 5 ms apart, whether a condition is met. @return false when it is not within the limit. */
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
