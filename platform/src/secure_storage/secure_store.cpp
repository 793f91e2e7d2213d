#include "secure_store.h"

#include "common/descriptor.h"
#include "common/regular_file.h"
#include "secure_record.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace platform::secure {
namespace {

constexpr const char* store_name = "aaba977f";
constexpr const char* new_name = "aaba977f.new";
constexpr std::string_view mark = "PSSTORE2";
constexpr std::size_t hash_size = 32;

struct Folder {
    const char* name;
    mode_t mode;
};

/** The path /opt/share/securestorage/data; only the owner may enter the last two folders. */
constexpr std::array<Folder, 4> folders{
    {{"opt", 0755}, {"share", 0755}, {"securestorage", 0700}, {"data", 0700}}};

/** Name, fingerprint and sealed bytes of each record. */
const GVariantType* records_type() { return G_VARIANT_TYPE("a(ayayay)"); }

GVariant* byte_array(const std::string& bytes) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes.data(), bytes.size(), 1);
}

std::string member(GVariant* record, gsize index) {
    g_autoptr(GVariant) array = g_variant_get_child_value(record, index);
    gsize size = 0;
    const auto* const bytes = static_cast<const char*>(g_variant_get_fixed_array(array, &size, 1));
    return {bytes, size};
}

/** Creates and syncs a folder with its mode, ignoring the umask; leaves an existing folder unchanged. */
bool make_folder(const Descriptor& parent, const Folder& folder) {
    if (mkdirat(parent.get(), folder.name, folder.mode) < 0)
        return errno == EEXIST;
    return fchmodat(parent.get(), folder.name, folder.mode, 0) == 0 && fsync(parent.get()) == 0;
}

/** Opens a folder; follows a symlink only if root owns it and its target and nobody else can write the target. */
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

/** Opens the store's folder, creating it if `make`; on failure returns nothing and sets errno. */
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

Store read_store_in(const Descriptor& folder) {
    const std::optional<std::string> file = read_regular_file(folder.get(), store_name, O_NOFOLLOW);
    if (!file && errno != EFBIG)
        return {errno == ENOENT ? no_such_record : storage_failed, {}};
    std::optional<Records> records = file ? decode(*file) : std::nullopt;
    return records ? Store{ok, std::move(*records)} : Store{not_authentic, {}};
}

/** Gives the new file the old store's owner. */
bool keep_owner(const Descriptor& folder, const Descriptor& file) {
    struct stat former {};
    if (fstatat(folder.get(), store_name, &former, AT_SYMLINK_NOFOLLOW) < 0)
        return errno == ENOENT;
    return fchown(file.get(), former.st_uid, former.st_gid) == 0;
}

/** Unlike `g_file_set_contents_full`, keeps the owner, ignores the umask and removes a file left by a killed writer. */
bool replace_store(const Descriptor& folder, const std::string& bytes) {
    (void)unlinkat(folder.get(), new_name, 0);
    const Descriptor file(openat(folder.get(), new_name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file && keep_owner(folder, file) && fchmod(file.get(), 0600) == 0 &&
        write_all(file.get(), bytes) == 0 && fsync(file.get()) == 0 &&
        renameat(folder.get(), new_name, folder.get(), store_name) == 0)
        return fsync(folder.get()) == 0;
    (void)unlinkat(folder.get(), new_name, 0);
    return false;
}

} // namespace

std::string encode(const Records& records) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, records_type());
    for (const auto& [key, sealed] : records)
        g_variant_builder_add(&builder, "(@ay@ay@ay)", byte_array(key.first), byte_array(key.second),
                              byte_array(sealed));
    g_autoptr(GVariant) encoded = g_variant_ref_sink(g_variant_builder_end(&builder));
    std::string bytes(mark);
    bytes.append(static_cast<const char*>(g_variant_get_data(encoded)), g_variant_get_size(encoded));
    return bytes.append(hash_of(bytes, hash_size));
}

std::optional<Records> decode(std::string_view file) {
    if (file.size() < mark.size() + hash_size || !file.starts_with(mark))
        return std::nullopt;
    const std::string_view hashed = file.substr(0, file.size() - hash_size);
    if (file.substr(hashed.size()) != hash_of(hashed, hash_size))
        return std::nullopt;
    const std::string_view data = hashed.substr(mark.size());
    g_autoptr(GVariant) encoded = g_variant_ref_sink(
        g_variant_new_from_data(records_type(), data.data(), data.size(), FALSE, nullptr, nullptr));
    Records records;
    for (gsize i = 0; i < g_variant_n_children(encoded); ++i) {
        g_autoptr(GVariant) record = g_variant_get_child_value(encoded, i);
        records[{member(record, 0), member(record, 1)}] = member(record, 2);
    }
    return records;
}

Store read_store() {
    const Descriptor folder = open_folder(false);
    if (!folder)
        return {errno == ENOENT ? no_such_record : storage_failed, {}};
    return read_store_in(folder);
}

SecureStorageResult put_record(const Records::value_type& record) {
    const Descriptor folder = open_folder(true);
    // Lock the folder itself: every process that can write the store can lock it.
    if (!folder || flock(folder.get(), LOCK_EX) < 0)
        return storage_failed;
    Store store = read_store_in(folder);
    if (store.result == storage_failed)
        return storage_failed;
    store.records.insert_or_assign(record.first, record.second);
    const std::string bytes = encode(store.records);
    return bytes.size() <= largest_file && replace_store(folder, bytes) ? ok : storage_failed;
}

} // namespace platform::secure
