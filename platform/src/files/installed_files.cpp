#include "installed_files.h"

#include <glib.h>

namespace platform {
namespace {

/** A file below the prefix: the folder that holds the program's own. */
std::string below_prefix(const char* path) {
    g_autofree char* program = g_file_read_link("/proc/self/exe", nullptr);
    g_autofree char* folder = g_path_get_dirname(program != nullptr ? program : "");
    g_autofree char* prefix = g_path_get_dirname(folder);
    g_autofree char* file = g_build_filename(prefix, path, nullptr);
    return file;
}

} // namespace

std::string theme_file() { return below_prefix("share/tv-platform/vell.edj"); }

} // namespace platform
