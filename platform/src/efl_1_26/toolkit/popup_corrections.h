/** Corrections of Elementary's popup. */
#pragma once

#include <Evas.h>

namespace vell {

/** Returns the part of an Elementary popup that covers the window and takes the focus when it is shown. */
Evas_Object* notification_of(Evas_Object* popup);

/**
 * Corrects what Elementary 1.26 was measured to do with a popup:
 *
 * - A dismissed popup is hidden some main-loop iterations later, through a signal of the theme, even if it was shown again
 *   since. Now it is hidden within the call, which also emits "dismissed".
 * - The focus goes back to the widget that had it when the popup was shown, which may be deleted. Now the window's focus
 *   history decides.
 * - After a popup was shown and dismissed in one iteration, nothing in it can take the focus, and EFL reports an error when
 *   it is shown again.
 * - It ignores a changed writing direction. Now it follows.
 */
void correct_popup(Evas_Object* popup);

} // namespace vell
