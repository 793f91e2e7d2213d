/**
 * The C library's files, closed by their owner. C++'s file streams would bring its locales into the program, which are
 * larger than all the rest of it.
 */
#pragma once

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <string>

struct FileClose {
    void operator()(std::FILE* file) const { std::fclose(file); } // NOLINT(cppcoreguidelines-owning-memory)
};

using File = std::unique_ptr<std::FILE, FileClose>;

/**
 * Opens a file without waiting: fopen(3) waits at a named pipe in its place until someone opens the other end.
 *
 * @param flags of open(2).
 * @param mode  of fopen(3), for the same access.
 * @return nothing when it cannot be opened, or is to be written and a pipe that nobody reads.
 */
inline File open_file(const std::string& path, int flags, const char* mode) {
    const int descriptor = open(path.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0666);
    return File{descriptor < 0 ? nullptr : fdopen(descriptor, mode)};
}

/** Replaces a file's content, or makes the file. Nothing is written, or said, when it cannot be opened. */
inline void replace_content(const std::string& path, const std::string& content) {
    if (const File file = open_file(path, O_WRONLY | O_CREAT | O_TRUNC, "w"))
        std::fwrite(content.data(), 1, content.size(), file.get());
}
