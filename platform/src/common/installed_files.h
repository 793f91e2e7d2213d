/** Where the files are that were installed with the program. */
#pragma once

#include <string>

namespace platform {

/** The theme's file, whether it exists or not: `../share/tv-platform/vell.edj` from the program's folder. */
std::string theme_file();

} // namespace platform
