#include "shortening.h"

#include <rapidcheck/shrink/Shrink.h>

namespace walk {
namespace {

using namespace std::chrono_literals;

/** What the steps do differently from the model; empty when nothing. */
std::string trial(Walk& walk, const Steps& steps) {
    try {
        walk.hand.be_patient(150ms);
        walk.begin();
        for (const std::size_t step : steps) {
            if (!can_happen(walk.state, step))
                return {};
            walk.take(step);
        }
        return {};
    } catch (const Difference& difference) {
        return difference.what();
    }
}

/** The nearest way to where the last of the steps begins, as far as it matters, and that step. */
Steps direct_way(const Steps& steps, std::uint64_t what_matters) {
    State before;
    for (std::size_t i = 0; i + 1 < steps.size(); ++i)
        before = follow(before, transitions()[steps[i]]).state;
    return nearest(State{}, can_happen,
                   [&](const State& state, std::size_t transition) {
                       return transition == steps.back() &&
                              ((place(state) ^ place(before)) & what_matters) == 0;
                   })
        .value_or(steps);
}

} // namespace

Steps shortened(Walk& walk, Steps steps, std::string& difference) {
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    const auto shows = [&](const Steps& fewer) {
        const std::string shown = trial(walk, fewer);
        if (shown.empty())
            return false;
        difference = shown;
        steps.assign(walk.taken.begin(), walk.taken.end());
        return true;
    };
    const std::uint64_t grain = transitions()[steps.back()].grain;
    (void)(shows(direct_way(steps, grain)) || shows(direct_way(steps, ~std::uint64_t{0})));
    auto attempts = rc::shrink::removeChunks(steps);
    for (auto fewer = attempts.next(); fewer && std::chrono::steady_clock::now() < deadline;
         fewer = attempts.next())
        if (shows(*fewer))
            attempts = rc::shrink::removeChunks(steps);
    return steps;
}

} // namespace walk
