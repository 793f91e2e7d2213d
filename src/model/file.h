/**
 * The C library's files, closed by their owner. C++'s file streams would bring its locales into the program, which are
 * larger than all the rest of it.
 */
#pragma once

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

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

/** Opens the file that has this name alone: nothing when a link is in its place, symbolic or hard. */
inline File open_unlinked_file(const std::string& path, int flags, const char* mode) {
    File file = open_file(path, flags | O_NOFOLLOW, mode);
    struct stat status {};
    if (file && (fstat(fileno(file.get()), &status) != 0 || status.st_nlink != 1))
        file.reset();
    return file;
}

/**
 * Replaces a file's content, or creates the file. A link in its place is replaced, never followed: the folder may
 * belong to an account with fewer rights. Nothing is written or logged when the file cannot be opened.
 */
inline void replace_content(const std::string& path, const std::string& content) {
    // Without O_CREAT: the kernel may refuse it for another account's file in /tmp (fs.protected_regular).
    File file = open_unlinked_file(path, O_WRONLY, "w");
    if (!file) {
        struct stat status {};
        if (lstat(path.c_str(), &status) == 0 && (S_ISLNK(status.st_mode) || status.st_nlink > 1))
            unlink(path.c_str());
        file = open_file(path, O_WRONLY | O_CREAT | O_EXCL, "w");
    }
    if (file && ftruncate(fileno(file.get()), 0) == 0)
        std::fwrite(content.data(), 1, content.size(), file.get());
}

/**
 * Gives a file, which other applications read, to the device's owner account: user id 5001, group id 100.
 *
 * @return false when that fails, for example because the file is missing or a link.
 */
inline bool give_to_device_owner(const std::string& path) {
    constexpr uid_t owner_user = 5001;
    constexpr gid_t users_group = 100;
    const File file = open_unlinked_file(path, O_RDONLY, "r");
    return file && fchown(fileno(file.get()), owner_user, users_group) == 0;
}
