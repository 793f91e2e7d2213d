/** The radio's service going wrong in every way, at every command and with its event. */
#pragma once

#include "shortening.h"

namespace walk {

/**
 * Makes each fault happen at each command, and in events. After each the page is as it should be, the cause is on the
 * log once, and the next command works as soon as the service does.
 *
 * @param part half of the commands: 1 or 2; 0 for all.
 * @return how many faults were made to happen.
 * @throws Difference when one of them is another matter.
 */
int take_faults(Walk& walk, int part);

} // namespace walk
