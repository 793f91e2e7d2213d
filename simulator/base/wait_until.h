/** Waiting for what nobody announces. */
#pragma once

#include <chrono>
#include <functional>

namespace simulator {

/**
 * Asks again and again, 5 ms apart, whether it is so.
 *
 * @return false when it is not within the limit.
 */
bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds limit);

} // namespace simulator
