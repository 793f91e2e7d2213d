/** What the simulated NCP host remembers, and what it is told to do. */
#pragma once

#include <string>
#include <vector>

namespace station {

/**
 * Every call the NCP host was asked since it started, in order, for example "ember_set_channel(15)".
 *
 * @throws std::runtime_error when it does not answer.
 */
std::vector<std::string> asked_of_ncp_host();

/**
 * From now on a method answers in another way.
 *
 * @param behaviour "normal", "code N", "error", "late MS", "never" or "wrong signature".
 * @throws std::runtime_error for an unknown method or behaviour.
 */
void let_ncp_host_answer(const std::string& method, const std::string& behaviour);

/** Makes it say "ncp_event" with this text; throws std::runtime_error when it does not answer. */
void let_ncp_host_emit(const std::string& event);

} // namespace station
