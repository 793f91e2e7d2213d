/**
 * The C library's files, closed by their owner. C++'s file streams would bring its locales into the program, which are
 * larger than all the rest of it.
 */
#pragma once

#include <cstdio>
#include <memory>
#include <string>

struct FileClose {
    void operator()(std::FILE* file) const { std::fclose(file); } // NOLINT(cppcoreguidelines-owning-memory)
};

using File = std::unique_ptr<std::FILE, FileClose>;

/** Replaces a file's content, or makes the file. Nothing is written, or said, when it cannot be opened. */
inline void replace_content(const std::string& path, const std::string& content) {
    if (const File file{std::fopen(path.c_str(), "w")})
        std::fwrite(content.data(), 1, content.size(), file.get());
}
