/** Ways over the model. */
#pragma once

#include "model.h"

namespace model {

using Steps = std::vector<Transition>;

/**
 * Finds the cheapest way to a step that is wanted.
 *
 * @param is_wanted asked of each transition that can happen in a state.
 * @return the way, which ends with that step; nothing when none leads there.
 */
std::optional<Steps> nearest(const State& from,
                             const std::function<bool(const State&, const Transition&)>& is_wanted);

} // namespace model
