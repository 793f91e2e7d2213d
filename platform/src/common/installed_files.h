/** Paths of installed files. */
#pragma once

#include <string>

namespace platform {

/** Returns the theme's path, even if it is missing: `../share/tv-platform/vell.edj` from the program's folder. */
std::string theme_file();

} // namespace platform
