/** What every fuzz target implements and calls. */
#pragma once

#include <cstdlib>
#include <string>

/** Tests one input. */
void fuzz(const std::string& input);

/** Reports a finding with the current input. */
inline void expect(bool condition) {
    if (!condition)
        std::abort();
}
