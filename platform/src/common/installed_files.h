/** Paths of the files that are installed with the program. */
#pragma once

#include <string>

namespace platform {

/** Returns the path of the theme, whether it exists or not: `../share/tv-platform/vell.edj` from the program's folder. */
std::string theme_file();

} // namespace platform
