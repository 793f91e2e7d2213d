/** Paths of installed files. */
#pragma once

#include <string>

namespace platform {

/** Returns the toolkit's data folder, even if it is missing: `../share/tv-platform` from the program's folder. */
std::string toolkit_data_folder();

/** Returns the theme's path, even if it is missing: `themes/default.edj` in the toolkit's data folder. */
std::string theme_file();

} // namespace platform
