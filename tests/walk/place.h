/** What makes one place in the graph another. */
#pragma once

#include "state.h"

namespace walk {

/** The parts of a place; a transition counts once for each combination of those that make it another there. */
enum Grain : std::uint64_t {
    page = 0x7,
    start = 0x18,
    waits = 0x8, // no other place when the start has then failed, which takes three seconds
    popup = 0x60,
    focus = 0x780,
    number = 0x3800,
    stream = 0x4000,
    mirrored = 0x8000,
    behind = 0x10000,
    radio = 0xE0000,
    texts = 0x700000,
    packets = 0x1800000,
    made = 0x2000000,
    memory = 0xC000000 | 0x10000000
};

/** The state without what makes no other place of it. */
std::uint64_t place(const State& state);

} // namespace walk
