#pragma once

#include "driver.h"

namespace model {

/**
 * Finds fewer steps that still show a difference, each time on an application started again, for two minutes at most.
 *
 * @param steps      that show it.
 * @param difference what the steps show; replaced by what the fewest show.
 */
Steps shrink(Driver& driver, Steps steps, std::string& difference);

} // namespace model
