/** Where Elementary's popup behaves otherwise than the toolkit's should. */
#pragma once

#include <Evas.h>

namespace vell {

/** The part of an Elementary popup that covers the window and, when it appears, takes the focus. */
Evas_Object* notification_of(Evas_Object* popup);

/**
 * Corrects what Elementary 1.26 was measured to do with a popup:
 *
 * - It dismisses it some turns of the main loop later, through a signal of the theme, and hides it even when
 *   it was shown again meanwhile. It is hidden within the call now, "dismissed" included.
 * - It gives the focus back to what had it when the popup was shown, though that may be deleted by then. The
 *   window's own history says now who gets it.
 * - After it was shown and dismissed in one turn nothing in it can take the focus, and EFL reports an error when it is
 *   shown again.
 * - It does not look at the direction of the layout again. The popup follows a changed one now.
 */
void correct_popup(Evas_Object* popup);

} // namespace vell
