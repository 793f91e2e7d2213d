/** The radio's service going wrong in every way, at every command and with its event. */
#pragma once

#include "driver.h"

namespace model {

/**
 * Injects each fault at each command, and in events. After each the page is as it should be, the cause is on the log
 * once, and the next command works as soon as the service does.
 *
 * @param part half of the commands: 1 or 2; 0 for all.
 * @return how many faults were injected.
 * @throws Difference if the outcome differs from the model.
 */
int take_faults(Driver& driver, int part);

} // namespace model
