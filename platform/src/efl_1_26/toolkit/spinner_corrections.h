/** Workarounds for Elementary's spinner. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Corrects the behaviour of a spinner. Observed with Elementary 1.26:
 *
 * - The focus manager knows it only as the parent of its inner buttons, so without them it cannot take the focus.
 *   Corrected: it can hold the focus.
 * - A number set by assistive technology is not shown, and may be fractional or NaN. Corrected: it is
 *   rounded and shown, and rejected if it is outside the limits or if the spinner is disabled or behind a popup.
 */
void correct_spinner(Evas_Object* spinner);

} // namespace vell
