#include "route.h"

#include <algorithm>
#include <queue>
#include <unordered_set>

namespace walk {
namespace {

struct Visit {
    State state;
    std::size_t came_from; /**< index of the visit before */
    std::size_t by;        /**< the transition */
};

using Open = std::pair<int, std::size_t>; // the cost of the visit, and its index

} // namespace

bool can_happen(const State& state, std::size_t transition) {
    return transitions()[transition].can_happen(state);
}

Crossing crossing(const State& state, std::size_t transition) {
    return {transition, place(state) & transitions()[transition].grain};
}

/** Goes from place to place, the cheapest first. */
std::optional<Steps> nearest(const State& from, const Choice& may, const Choice& is_wanted) {
    std::vector<Visit> visits{{from, 0, 0}};
    std::priority_queue<Open, std::vector<Open>, std::greater<>> open({}, {{0, 0}});
    std::unordered_set<std::uint64_t> seen;
    while (!open.empty()) {
        const auto [cost, index] = open.top();
        open.pop();
        const State state = visits[index].state;
        if (!seen.insert(place(state)).second)
            continue;
        for (std::size_t i = 0; i < transitions().size(); ++i) {
            if (!may(state, i))
                continue;
            if (is_wanted(state, i)) {
                Steps way{i};
                for (std::size_t visit = index; visit != 0; visit = visits[visit].came_from)
                    way.push_back(visits[visit].by);
                std::ranges::reverse(way);
                return way;
            }
            const Transition& transition = transitions()[i];
            const State next = follow(state, transition).state;
            if (seen.contains(place(next)))
                continue;
            open.push({cost + transition.cost, visits.size()});
            visits.push_back({next, index, i});
        }
    }
    return std::nullopt;
}

} // namespace walk
