/** Owned C library files: unlike C++ file streams, they do not need the large C++ locales. */
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
 * Opens a file without blocking, unlike fopen(3), which waits for the other end of a named pipe.
 *
 * @param flags flags of open(2).
 * @param mode  the corresponding mode of fopen(3).
 * @return null if the file cannot be opened. A pipe without a reader cannot be opened for writing.
 */
inline File open_file(const std::string& path, int flags, const char* mode) {
    const int descriptor = open(path.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0666);
    return File{descriptor < 0 ? nullptr : fdopen(descriptor, mode)};
}

/** Opens a file as `open_file` does; returns null if it is a symlink or has several hard links. */
inline File open_unlinked_file(const std::string& path, int flags, const char* mode) {
    File file = open_file(path, flags | O_NOFOLLOW, mode);
    struct stat status {};
    if (file && (fstat(fileno(file.get()), &status) != 0 || status.st_nlink != 1))
        file.reset();
    return file;
}

/**
 * Replaces a file's content, or creates the file. Replaces a link instead of following it, because a less privileged
 * user may own the folder. Silently does nothing if the file cannot be opened.
 */
inline void replace_content(const std::string& path, const std::string& content) {
    // Without O_CREAT, which the kernel may refuse for another user's file in /tmp (fs.protected_regular).
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
 * Changes a file's owner to the device's owner account (user 5001, group 100), so that other applications can read it.
 *
 * @return false on failure, for example if the file is missing or a link.
 */
inline bool give_to_device_owner(const std::string& path) {
    constexpr uid_t owner_user = 5001;
    constexpr gid_t users_group = 100;
    const File file = open_unlinked_file(path, O_RDONLY, "r");
    return file && fchown(fileno(file.get()), owner_user, users_group) == 0;
}
