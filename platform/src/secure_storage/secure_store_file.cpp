#include "secure_store.h"

#include "files/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace platform::secure {
namespace {

using namespace std::chrono_literals;

constexpr const char* store_name = "aaba977f";
constexpr const char* new_name = "aaba977f.new";
constexpr const char* damaged_name = "aaba977f.damaged";
constexpr off_t largest_store = 1L << 24;
constexpr auto lock_patience = 5s;
constexpr auto lock_pause = 1ms; // short, to meet the moment between two writes of a busy writer

struct Folder {
    const char* name;
    mode_t mode;
};

/** /opt/share/securestorage/data, from the root. Others may not enter the last two; those above are shared. */
constexpr std::array<Folder, 4> folders{
    {{"opt", 0755}, {"share", 0755}, {"securestorage", 0700}, {"data", 0700}}};

/** Leaves a folder that is there as it is; a new one gets its mode whatever the process's file mode mask, and is on
 * the disk. */
bool make_folder(const Descriptor& parent, const Folder& folder) {
    if (mkdirat(parent.get(), folder.name, folder.mode) < 0)
        return errno == EEXIST;
    return fchmodat(parent.get(), folder.name, folder.mode, 0) == 0 && fsync(parent.get()) == 0;
}

/** A link is followed when it and the folder that it leads to are root's, and nobody else may write the folder. */
Descriptor open_next(const Descriptor& parent, const char* name) {
    constexpr auto flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    struct stat status {};
    const bool is_link =
        fstatat(parent.get(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
    if (!is_link || status.st_uid != 0)
        return Descriptor(openat(parent.get(), name, flags | O_NOFOLLOW));
    Descriptor folder(openat(parent.get(), name, flags));
    if (fstat(folder.get(), &status) == 0 && status.st_uid == 0 &&
        (status.st_mode & (S_IWGRP | S_IWOTH)) == 0)
        return folder;
    errno = ELOOP;
    return {};
}

/** The store's folder; nothing, and errno, when it is not to be had. */
Descriptor open_folder(bool make) {
    Descriptor folder(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (const Folder& next : folders) {
        if (make && !make_folder(folder, next))
            return {};
        folder = open_next(folder, next.name);
        if (!folder)
            return {};
    }
    return folder;
}

/** The folder itself is locked, so whoever may write the store may also lock it. */
bool lock(const Descriptor& folder) {
    const auto deadline = std::chrono::steady_clock::now() + lock_patience;
    while (flock(folder.get(), LOCK_EX | LOCK_NB) < 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(lock_pause);
    }
    return true;
}

/** The bytes of a regular file; none of one too large to be a store. */
std::optional<Bytes> read_all(const Descriptor& file) {
    struct stat status {};
    if (fstat(file.get(), &status) < 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    if (status.st_size > largest_store)
        return Bytes();
    Bytes bytes(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    bytes.resize(filled);
    return bytes;
}

Store read_store_in(const Descriptor& folder) {
    const Descriptor file(openat(folder.get(), store_name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file)
        return {errno == ENOENT ? no_such_record : storage_failed, {}};
    const std::optional<Bytes> bytes = read_all(file);
    if (!bytes)
        return {storage_failed, {}};
    std::optional<Records> records = decode(*bytes);
    return records ? Store{ok, std::move(*records)} : Store{not_authentic, {}};
}

/** A store that was given to somebody stays theirs. */
bool keep_owner(const Descriptor& folder, const Descriptor& file) {
    struct stat former {};
    if (fstatat(folder.get(), store_name, &former, AT_SYMLINK_NOFOLLOW) < 0)
        return errno == ENOENT;
    struct stat own {};
    return fstat(file.get(), &own) == 0 && ((own.st_uid == former.st_uid && own.st_gid == former.st_gid) ||
                                            fchown(file.get(), former.st_uid, former.st_gid) == 0);
}

bool write_new(const Descriptor& folder, const Bytes& bytes) {
    (void)unlinkat(folder.get(), new_name, 0); // left by a crash
    const Descriptor file(openat(folder.get(), new_name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    const std::span<const char> characters(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return file && keep_owner(folder, file) && fchmod(file.get(), 0600) == 0 &&
           write_all(file.get(), characters) == 0 && fsync(file.get()) == 0;
}

/** Gives the damaged store its second name, so that there is a store at every moment; where a file has one
 * name only, it moves. */
bool keep_aside(const Descriptor& folder) {
    (void)unlinkat(folder.get(), damaged_name, 0);
    return linkat(folder.get(), store_name, folder.get(), damaged_name, 0) == 0 ||
           renameat(folder.get(), store_name, folder.get(), damaged_name) == 0;
}

bool put_in_place(const Descriptor& folder, bool keep_damaged) {
    if (keep_damaged && !keep_aside(folder))
        return false;
    return renameat(folder.get(), new_name, folder.get(), store_name) == 0 && fsync(folder.get()) == 0;
}

} // namespace

Store read_store() {
    const Descriptor folder = open_folder(false);
    if (!folder)
        return {errno == ENOENT ? no_such_record : storage_failed, {}};
    return read_store_in(folder);
}

SecureStorageResult change_store(const std::function<void(Records&)>& change) {
    const Descriptor folder = open_folder(true);
    if (!folder || !lock(folder))
        return storage_failed;
    Store store = read_store_in(folder);
    if (store.result == storage_failed)
        return storage_failed;
    change(store.records);
    const Bytes bytes = encode(store.records);
    if (bytes.size() > static_cast<std::size_t>(largest_store) || !write_new(folder, bytes) ||
        !put_in_place(folder, store.result == not_authentic)) {
        (void)unlinkat(folder.get(), new_name, 0);
        return storage_failed;
    }
    return ok;
}

} // namespace platform::secure
