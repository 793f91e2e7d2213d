/** The secure storage's file, which contains the records of all applications and is replaced as a whole. */
#pragma once

#include "platform/secure_storage.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform::secure {

/** The sealed records by name and credential fingerprint. */
using Records = std::map<std::pair<std::string, std::string>, std::string>;

/** Encodes a store file: the records and a checksum. */
std::string encode(const Records& records);

/** Decodes a store file; returns nothing if it is truncated, altered or not a store. */
std::optional<Records> decode(std::string_view file);

/** The result of reading a store. */
struct Store {
    SecureStorageResult result =
        ok; /**< `ok`, `no_such_record` (no store), `not_authentic` or `storage_failed` */
    Records records;
};

/** Reads the store. Safe with concurrent writers, which replace the store atomically. */
Store read_store();

/**
 * Adds or replaces a record, under a lock: writes and syncs a new file, which then replaces the old one. Replaces a
 * damaged store. Creates missing folders, ignoring the umask, and removes the unfinished file of a killed writer.
 *
 * @return `ok` or `storage_failed`.
 */
SecureStorageResult put_record(const Records::value_type& record);

} // namespace platform::secure
