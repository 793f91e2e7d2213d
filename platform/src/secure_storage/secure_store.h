/** The secure storage's file: all records of all applications, in one file that is replaced as a whole. */
#pragma once

#include "platform/secure_storage.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform::secure {

/** The sealed records, each by its name and the fingerprint of its credential. */
using Records = std::map<std::pair<std::string, std::string>, std::string>;

/** Returns the bytes of a store file: the records, then a checksum that finds any damage. */
std::string encode(const Records& records);

/** Returns the records of a store file's bytes; nothing when they are cut, altered or no store at all. */
std::optional<Records> decode(std::string_view file);

/** A store read from its file. */
struct Store {
    SecureStorageResult result =
        ok; /**< `ok`, `no_such_record` (no store), `not_authentic` or `storage_failed` */
    Records records;
};

/** Reads the store. A concurrent writer does not matter: a new store replaces the old one atomically. */
Store read_store();

/**
 * Adds a record to the store or replaces it, one process at a time: writes a new file to the disk, which then takes the
 * old one's place. Replaces a damaged store. Makes missing folders, closed to other users whatever the process's file
 * mode mask, and removes what a killed writer left.
 *
 * @return `ok` or `storage_failed`.
 */
SecureStorageResult put_record(const Records::value_type& record);

} // namespace platform::secure
