#include "theme_file.h"

#include <filesystem>

namespace platform {

std::string theme_file() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / "share" / "tv-platform" / "vell.edj";
}

} // namespace platform
