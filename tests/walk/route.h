/** Ways over the model. */
#pragma once

#include "model.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace walk {

/** Transitions by their index, in order. */
using Steps = std::vector<std::size_t>;

/** A transition from a place: what is taken or not. */
using Crossing = std::pair<std::size_t, std::uint64_t>;
Crossing crossing(const State& state, std::size_t transition);

using Choice = std::function<bool(const State&, std::size_t)>;
bool can_happen(const State& state, std::size_t transition);

/** The cheapest way, by transitions that may be taken, from a state to one that is wanted, which is its last
 * step; nothing when none leads there. */
std::optional<Steps> nearest(const State& from, const Choice& may, const Choice& is_wanted);

} // namespace walk
