/** What hides and shows inside an Elementary popup. */
#pragma once

#include <Evas.h>

namespace vell {

/** The part of an Elementary popup that covers the window and, when it appears, takes the focus. */
Evas_Object* notification_of(Evas_Object* popup);

/**
 * Elementary 1.26 dismisses a popup some turns of the main loop later, through a signal of the theme, and
 * hides it even when it was shown again meanwhile (measured). This hides it within the call, "dismissed"
 * included.
 */
void dismiss_at_once(Evas_Object* popup);

/**
 * Leaves it to the window what has the focus once the popup has gone. Elementary would turn to what had it
 * when the popup was shown, though that may be deleted by then (measured).
 */
void leave_focus_to_window(Evas_Object* popup);

} // namespace vell
