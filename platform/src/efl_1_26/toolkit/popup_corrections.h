/** Workarounds for Elementary's popup. */
#pragma once

#include <Evas.h>

namespace vell {

/** Returns the part of an Elementary popup that covers the window and takes the focus when the popup is shown. */
Evas_Object* notification_of(Evas_Object* popup);

/**
 * Corrects the behaviour of a popup. Observed with Elementary 1.26:
 *
 * - A dismissed popup is hidden some main-loop iterations later, by a theme signal, even if it was shown again
 *   meanwhile. Corrected: it is hidden within the call, which also emits "dismissed".
 * - The focus goes back to the widget that had it when the popup was shown, even if that widget is deleted.
 *   Corrected: the focus follows the window's focus history.
 * - After a popup is shown and dismissed in one iteration, nothing in it can take the focus, and EFL reports an error
 *   when it is shown again. Corrected.
 * - A popup ignores a changed text direction. Corrected.
 */
void correct_popup(Evas_Object* popup);

} // namespace vell
