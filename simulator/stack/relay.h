/** Passing bytes between two ends, as both daemons of the radio stack do. */
#pragma once

#include <string>

namespace simulator {

/** What became of passing on what waited at one end. */
enum class Passed { some, closed };

/**
 * Reads what waits at one end and writes it to the other.
 *
 * @param from a readable descriptor, not blocking.
 * @param to   where the bytes go; negative: they are dropped. An end that takes nothing for a second loses them.
 * @return `closed` when `from` has hung up.
 */
Passed pass_on(int from, int to);

/** The socket where cpcd serves the instance of that name, "cpcd_0" for example. */
std::string socket_path(const std::string& instance);

} // namespace simulator
