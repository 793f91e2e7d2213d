#include "shrink.h"

#include <rapidcheck/shrink/Shrink.h>
#include <thread>

namespace model {
namespace {

using namespace std::chrono_literals;

/** What the steps do differently from the model; empty when nothing. */
std::string try_out(Driver& driver, const Steps& steps) {
    try {
        driver.begin();
        for (const Transition& step : steps) {
            if (!step.can_happen(driver.state()))
                return {};
            driver.take(step);
        }
        std::this_thread::sleep_for(150ms); // for what must not come
        driver.expect({});
        return {};
    } catch (const Difference& difference) {
        return difference.what();
    }
}

/** The nearest way to where the last of the steps begins, as far as a mask says, and that step. */
Steps direct_way(const Steps& steps, unsigned mask) {
    State before;
    for (std::size_t i = 0; i + 1 < steps.size(); ++i)
        before = follow(before, steps[i]).state;
    const auto is_there = [&](const State& state, const Transition& by) {
        return by.name == steps.back().name && key(state, mask) == key(before, mask);
    };
    return nearest(State{}, is_there).value_or(steps);
}

} // namespace

Steps shrink(Driver& driver, Steps steps, std::string& difference) {
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    driver.set_patience(4s); // a start without the relay takes three
    const auto shows = [&](const Steps& fewer) {
        const std::string shown = try_out(driver, fewer);
        if (shown.empty())
            return false;
        difference = shown;
        steps = driver.taken();
        return true;
    };
    (void)(shows(direct_way(steps, steps.back().mask)) || shows(direct_way(steps, ~0U)));
    auto attempts = rc::shrink::removeChunks(steps);
    for (auto fewer = attempts.next(); fewer && std::chrono::steady_clock::now() < deadline;
         fewer = attempts.next())
        if (shows(*fewer))
            attempts = rc::shrink::removeChunks(steps);
    return steps;
}

} // namespace model
