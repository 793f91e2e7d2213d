/** The secure storage's file: all records of all applications, in one file that is replaced as a whole. */
#pragma once

#include "secure_record.h"

#include <functional>

namespace platform::secure {

/** The store's records. */
using Records = std::vector<Record>;

/** The bytes of a store file: a mark, the records, and a hash over all of it that finds any damage. */
Bytes encode(const Records& records);

/** The records of a store file's bytes; nothing when they are cut, altered or no store at all. */
std::optional<Records> decode(ByteView file);

/** A store read from its file. */
struct Store {
    SecureStorageResult result =
        ok; /**< `ok`, `no_such_record` (no store), `not_authentic` or `storage_failed` */
    Records records;
};

/** Reads the store. A writer at work does not disturb: its store appears at once and whole. */
Store read_store();

/**
 * Changes the store: one process at a time (waits at most five seconds for another one), from the newest
 * records to a new file on the disk that then takes the old one's place. A damaged store is kept beside the
 * new one, its name ending in ".damaged". Makes the folders when they are missing, closed to other users
 * whatever the process's file mode mask. What a killed writer left is cleaned up by the next one.
 *
 * @return `ok` or `storage_failed`.
 */
SecureStorageResult change_store(const std::function<void(Records&)>& change);

} // namespace platform::secure
