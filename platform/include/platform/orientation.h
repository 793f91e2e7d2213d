/** The writing direction of the user interface. */
#pragma once

/**
 * Tells whether the user interface is mirrored, that is laid out from right to left.
 *
 * The setting "db/menu_widget/mirrored" (true or false) decides when it is present, else the writing
 * direction of the language in "db/menu_widget/language", else the interface is not mirrored.
 *
 * @return non-zero when mirrored, 0 when not.
 */
int ua_UI_orientation_get();
