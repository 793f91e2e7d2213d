/** Where Elementary says less to an assistive technology than the screen shows. */
#pragma once

#include <Evas.h>

namespace vell {

enum class AccessibleState {
    busy,   /**< its user has to wait */
    chosen, /**< it is the chosen one of its row */
    barred  /**< it cannot be used: it is neither enabled nor sensitive, and offers no action */
};

/**
 * Corrects what Elementary 1.26 was measured to say of a widget's states: it is never busy nor selected, and when the
 * focus is barred from it, it is enabled and offers its action all the same.
 */
void correct_accessible_states(Evas_Object* widget);

/** Says that a state of a widget with corrected states holds or no longer does; nothing when it is as it was. */
void set_accessible_state(Evas_Object* widget, AccessibleState state, bool holds);

/** Says that the widget's accessible name has been set, which Elementary 1.26 says for some widgets and not for others. */
void say_accessible_name(Evas_Object* widget);

} // namespace vell
