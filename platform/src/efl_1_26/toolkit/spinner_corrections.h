/** Where Elementary's spinner behaves otherwise than the toolkit's should. */
#pragma once

#include <Evas.h>

namespace vell {

/**
 * Corrects what Elementary 1.26 was measured to do with a spinner:
 *
 * - It registers it with the focus manager as a mere parent of its inner buttons, and without them nothing takes the
 *   focus. It is a widget that can hold the focus now.
 * - A number that an assistive technology sets is not shown, and may be a broken one or none at all. It is rounded and
 *   shown now, and refused beyond the limits, by a spinner that is disabled, and by one behind a popup.
 */
void correct_spinner(Evas_Object* spinner);

} // namespace vell
