/** The fewest steps that still show what a walk has found. */
#pragma once

#include "hand.h"
#include "route.h"

namespace walk {

/** Where the walk is, and how it came there since the application's first start. */
struct Walk {
    explicit Walk(const std::string& program) : hand(program) {}

    Hand hand;
    State state;
    Steps taken;

    void begin() {
        hand.begin();
        state = State{};
        taken.clear();
    }
    void take(std::size_t transition) {
        taken.push_back(transition);
        hand.take(state, transitions()[transition]);
        state = follow(state, transitions()[transition]).state;
    }
};

/**
 * Takes fewer and fewer of the steps, each time on an application started anew, for two minutes at most.
 *
 * @param difference what the steps show; replaced by what the fewest show.
 */
Steps shortened(Walk& walk, Steps steps, std::string& difference);

} // namespace walk
