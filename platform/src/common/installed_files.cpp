#include "installed_files.h"

#include <glib.h>

namespace platform {

std::string toolkit_data_folder() {
    g_autofree char* program = g_file_read_link("/proc/self/exe", nullptr);
    g_autofree char* folder = g_path_get_dirname(program != nullptr ? program : "");
    g_autofree char* prefix = g_path_get_dirname(folder);
    g_autofree char* data = g_build_filename(prefix, "share", "tv-platform", nullptr);
    return data;
}

std::string theme_file() { return toolkit_data_folder() + "/themes/default.edj"; }

} // namespace platform
