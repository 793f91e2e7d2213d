/**
 * The platform settings store.
 *
 * On a Linux PC it is the key file `$XDG_CONFIG_HOME/tv-platform/settings.ini`; the setting "db/menu_widget/language"
 * is the key `language` in the section `[db/menu_widget]`.
 */
#pragma once

/**
 * Reads a string setting.
 *
 * @param key the setting's path, for example "db/menu_widget/language"; the last slash separates section and key.
 * @return the value, to be released with `free`; null if the file, section or key is missing, or the file is not a
 *         valid key file (logged).
 */
char* vconf_get_str(const char* key);
