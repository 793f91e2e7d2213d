/** Makes an Elementary spinner hold the focus itself. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Elementary 1.26 registers a spinner with the focus manager as a mere parent of its inner buttons, and
 * without them nothing takes the focus (measured). This registers the spinner as a widget that can hold it,
 * and has it say "focused" as other widgets do.
 */
void hold_focus_itself(Evas_Object* spinner);

} // namespace vell
