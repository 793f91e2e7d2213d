#include "model.h"

#include <algorithm>
#include <queue>
#include <set>

namespace model {
namespace {

struct Visit {
    State state;
    std::size_t came_from; /**< index of the visit before */
    const Transition* by;
};

using Open = std::pair<int, std::size_t>; // the cost of the visit, and its index

} // namespace

std::optional<Steps> nearest(const State& from, const Condition& is_wanted) {
    std::vector<Visit> visits{{from, 0, nullptr}};
    std::priority_queue<Open, std::vector<Open>, std::greater<>> open({}, {{0, 0}});
    std::set<Key> seen;
    while (!open.empty()) {
        const auto [cost, index] = open.top();
        open.pop();
        const State state = visits[index].state;
        if (!seen.insert(key(state)).second)
            continue;
        for (const Transition& transition : transitions()) {
            if (!transition.can_happen(state))
                continue;
            if (is_wanted(state, transition)) {
                Steps way{transition};
                for (std::size_t visit = index; visit != 0; visit = visits[visit].came_from)
                    way.push_back(*visits[visit].by);
                std::ranges::reverse(way);
                return way;
            }
            visits.push_back({follow(state, transition).state, index, &transition});
            open.push({cost + transition.cost, visits.size() - 1});
        }
    }
    return std::nullopt;
}

} // namespace model
