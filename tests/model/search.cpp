#include "model.h"

#include <set>

namespace model {

std::optional<Steps> nearest(const State& from, const Condition& is_wanted) {
    struct Visit {
        State state;
        std::vector<const Transition*> way;
    };
    std::multimap<int, Visit> open{{0, {from, {}}}}; // by cost
    std::set<Key> seen;
    while (!open.empty()) {
        const auto cheapest = open.extract(open.begin());
        const auto& [state, way] = cheapest.mapped();
        if (!seen.insert(key(state)).second)
            continue;
        for (const Transition& by : transitions()) {
            if (!by.can_happen(state))
                continue;
            std::vector<const Transition*> longer = way;
            longer.push_back(&by);
            if (is_wanted(state, by)) {
                Steps steps;
                for (const Transition* const step : longer)
                    steps.push_back(*step);
                return steps;
            }
            open.insert({cheapest.key() + by.cost, {follow(state, by).state, std::move(longer)}});
        }
    }
    return std::nullopt;
}

} // namespace model
