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

struct Open {
    int cost;
    std::size_t visit;
    bool operator<(const Open& other) const { return cost > other.cost; }
};

bool can_happen(const State& state, std::size_t transition) {
    return transitions()[transition].can_happen(state);
}

/** Goes to every place, the cheapest first, until `at` says of a transition there that it is enough. */
std::optional<Steps> search(const State& from, const Choice& may, const Choice& at) {
    std::vector<Visit> visits{{from, 0, 0}};
    std::priority_queue<Open> open;
    open.push({0, 0});
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
            if (at(state, i)) {
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

} // namespace

Crossing crossing(const State& state, std::size_t transition) {
    return {transition, place(state) & transitions()[transition].grain};
}

std::optional<Steps> nearest(const State& from, const Choice& may, const Choice& is_wanted) {
    return search(from, may, is_wanted);
}

Extent extent(const State& from) {
    Extent extent;
    std::set<std::uint64_t> places;
    (void)search(from, can_happen, [&](const State& state, std::size_t transition) {
        places.insert(place(state));
        extent.crossings.insert(crossing(state, transition));
        return false;
    });
    extent.places = places.size();
    return extent;
}

} // namespace walk
