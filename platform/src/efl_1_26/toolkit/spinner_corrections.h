/** Workarounds for Elementary's spinner. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Corrects the behaviour of a spinner. Observed with Elementary 1.26:
 *
 * - The focus manager knows a spinner only as the parent of its inner buttons, so a spinner without inner buttons
 *   cannot take the focus. Corrected: the spinner can hold the focus.
 * - A number set by assistive technology is not shown, and may be fractional or NaN. Corrected: the number is rounded
 *   and shown, or rejected if it is outside the limits or if the spinner is disabled or behind a popup.
 */
void correct_spinner(Evas_Object* spinner);

} // namespace vell
