/** The layout direction of the user interface. */
#pragma once

/**
 * Returns whether the user interface is mirrored (laid out from right to left).
 *
 * The setting "db/menu_widget/mirrored" (true or false) takes precedence over the direction of the language in
 * "db/menu_widget/language". Without both, the interface is not mirrored.
 *
 * @return non-zero if mirrored, else 0.
 */
int ua_UI_orientation_get();
