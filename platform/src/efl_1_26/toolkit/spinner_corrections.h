/** Corrections of Elementary's spinner. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Corrects what Elementary 1.26 was measured to do with a spinner:
 *
 * - It is registered with the focus manager as a parent of its inner buttons only; without them nothing takes the focus. Now
 *   it is a widget that can hold the focus.
 * - A number set by assistive technology is not shown, and may be fractional or not a number. Now it is rounded and shown, and
 *   rejected beyond the limits, by a disabled spinner, and by one behind a popup.
 */
void correct_spinner(Evas_Object* spinner);

} // namespace vell
