#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/** Writes a file and creates its parent folders. */
inline void put_file(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/** Returns a file's content; empty if it cannot be opened. */
inline std::string content_of(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
