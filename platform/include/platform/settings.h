/**
 * The platform settings store.
 *
 * On an ordinary Linux machine it is the key file `$XDG_CONFIG_HOME/tv-platform/settings.ini`: the setting
 * "db/menu_widget/language" is the key `language` of the section `[db/menu_widget]`.
 */
#pragma once

/**
 * Reads a string setting.
 *
 * @param key the setting's path, section and key parted by its last slash, for example
 * "db/menu_widget/language".
 * @return the value, which the caller releases with `free`; null when the file, the section or the key is
 * missing, or the file cannot be read as a key file (logged).
 */
char* vconf_get_str(const char* key);
