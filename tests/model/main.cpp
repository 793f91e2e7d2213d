/** Compares the application with the model. The script `run` has the usage. */

#include "driver.h"

#include <iostream>
#include <random>
#include <set>

namespace {

using namespace model;

using Steps = std::vector<const Transition*>;

/** A transition and the masked state in which it starts. */
auto edge(const State& from, const Transition& by) { return std::pair(by.name, key(from, by.mask)); }

/** Returns the cheapest path to a wanted step, including that step; empty if there is none. */
Steps nearest(const State& from, const std::function<bool(const State&, const Transition&)>& is_wanted) {
    std::multimap<int, std::pair<Outcome, Steps>> open{{0, {{from, {}, false, {}}, {}}}}; // by cost
    std::set<decltype(key(from))> seen;
    while (!open.empty()) {
        const auto cheapest = open.extract(open.begin());
        const auto& [state, steps] = cheapest.mapped();
        if (!seen.insert(key(state)).second)
            continue;
        for (const Transition& by : transitions) {
            if (!by.can_happen(state))
                continue;
            Steps longer = steps;
            longer.push_back(&by);
            if (is_wanted(state, by))
                return longer;
            open.insert({cheapest.key() + by.cost, {follow(state, by), std::move(longer)}});
        }
    }
    return {};
}

/** Performs every transition, or only those that start on this page, 1 to 5; 0 stands for all pages. */
void tour(Driver& driver, int page) {
    std::set<decltype(edge(State{}, {}))> taken;
    const auto is_wanted = [&](const State& state, const Transition& by) {
        return (page == 0 || page == static_cast<int>(state.page) + 1) && !taken.contains(edge(state, by));
    };
    for (Steps way; !(way = nearest(driver.state(), is_wanted)).empty();)
        for (const Transition* const step : way) {
            taken.insert(edge(driver.state(), *step));
            driver.take(*step);
        }
    std::cout << taken.size() << " transitions\n";
}

/** Performs each faulty step, and then the same step without the fault. */
void take_faults(Driver& driver) {
    for (const Transition& fault : faults()) {
        const auto is_normal_step = [&fault](const State& state, const Transition& by) {
            return fault.name.starts_with(by.name + ":") && fault.can_happen(state);
        };
        Steps steps = nearest(driver.state(), is_normal_step);
        steps.back() = &fault;
        for (const Transition* const step : steps)
            driver.take(*step);
        if (fault.behaviour == "dies" || fault.behaviour == "is away")
            driver.take({.name = "the service restarts", .act = Act::restart_service});
        for (const Transition* const step : nearest(driver.state(), is_normal_step))
            driver.take(*step);
    }
}

void take_random_steps(Driver& driver, int steps, int seed) {
    std::mt19937 random(static_cast<unsigned>(seed));
    for (int step = 0; step < steps; ++step) {
        std::vector<double> weights(transitions.size());
        std::ranges::transform(transitions, weights.begin(), [&driver](const Transition& by) {
            return by.can_happen(driver.state()) ? 1.0 / (30 + by.cost) : 0.0;
        });
        std::discrete_distribution<std::size_t> index(weights.begin(), weights.end());
        driver.take(transitions[index(random)]);
    }
}

} // namespace

int main(int argc, char** argv) try {
    const std::string what = argv[1];
    const int number = argc > 2 ? std::stoi(argv[2]) : 0;
    Driver driver;
    if (what == "tour")
        tour(driver, number);
    else if (what == "faults")
        take_faults(driver);
    else
        take_random_steps(driver, number, argc > 3 ? std::stoi(argv[3]) : 0);
    return 0;
} catch (const std::exception& error) {
    std::cout << error.what() << '\n';
    return 1;
}
