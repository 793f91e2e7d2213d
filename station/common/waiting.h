/** Waiting for what nobody announces. */
#pragma once

#include <chrono>
#include <functional>

namespace station {

/**
 * Asks again and again, 5 ms apart, whether it is so.
 *
 * @return false when it is not within the limit.
 */
bool comes_true(const std::function<bool()>& condition, std::chrono::milliseconds limit);

} // namespace station
