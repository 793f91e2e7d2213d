/** What a component in this process does, there as long as the component runs. */
#pragma once

#include "bus.h"

#include <map>
#include <string>

namespace simulator {

class Simulation {
public:
    virtual ~Simulation() = default;
    /** Those of its contract. */
    [[nodiscard]] virtual std::map<std::string, Method> methods() = 0;
};

} // namespace simulator
