#include "installed_files.h"

#include <filesystem>

namespace platform {
namespace {

std::filesystem::path prefix() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path();
}

} // namespace

std::string theme_file() { return prefix() / "share" / "tv-platform" / "vell.edj"; }

std::string writing_direction_module() {
    return prefix() / "lib" / "tv-platform" / "modules" / "writing_direction.so";
}

} // namespace platform
