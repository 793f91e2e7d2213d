/**
 * The platform's secure storage: small records, readable only with the credential that wrote them.
 *
 * On a Linux PC the store is the file "/opt/share/securestorage/data/aaba977f" (mode 0600, replaced atomically, owner
 * kept). It is encrypted and authenticated with a key derived from the credential and the machine ID (/etc/machine-id,
 * else /var/lib/dbus/machine-id). This detects damage and makes a copy unreadable on another machine. On this machine,
 * only the file mode protects the store: a user who can read it can also decrypt it, since the program contains the
 * credential and the machine ID is world-readable.
 *
 * Reading and writing return `storage_failed` if there is no machine ID, or if the store's path contains an untrusted
 * symlink. A symlink is trusted if root owns it and its target folder, and nobody else can write to that folder.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace platform {

/** The credential that protects an application's records, set by `ss_init_credential`. */
struct SecureStorageCredential {
    std::array<std::uint32_t, 5> words{}; /**< the application's 20 bytes */
    int kind = 0;                         /**< 1: an application's own credential */
    int flags = 0;                        /**< always 0 */
};

/** Results of the secure storage. */
enum SecureStorageResult : int {
    ok = 0,
    invalid_argument = -1, /**< a null pointer, or an invalid key, length, kind, flag or option */
    no_such_record = -2,   /**< there is no store, or no record with this key */
    not_authentic = -3,    /**< wrong credential or machine, or damaged data */
    storage_failed = -4,   /**< the store cannot be read or written */
};

} // namespace platform

/**
 * Sets a credential from the application's 20 bytes.
 *
 * @param credential the credential to set, cleared on failure; not null.
 * @param word0,word1,word2,word3,word4 the 20 bytes as five 32-bit words.
 * @param kind  1: an application's own credential.
 * @param flags 0.
 * @return `ok` or `invalid_argument`.
 */
int ss_init_credential(platform::SecureStorageCredential* credential, std::uint32_t word0,
                       std::uint32_t word1, std::uint32_t word2, std::uint32_t word3, std::uint32_t word4,
                       int kind, int flags);

/**
 * Reads a record; a failure leaves the outputs unchanged.
 *
 * @param data       receives the record's bytes, to be released with `ss_free_buffer`.
 * @param length     receives the number of bytes.
 * @param reserved1,reserved2 0.
 * @param key        the record's name, 1 to 255 bytes.
 * @param credential the credential that wrote the record.
 * @param option     0x4001: the application's private record.
 * @return `ok`, `invalid_argument`, `no_such_record`, `not_authentic` or `storage_failed`.
 */
int ss_read(char** data, std::size_t* length, int reserved1, int reserved2, const char* key,
            const platform::SecureStorageCredential* credential, int option);

/**
 * Writes a record, replacing an old one with the same key and credential. After a crash, the store contains either the
 * old or the new record. If two processes write at once, both records are kept.
 *
 * A damaged store is replaced with a new one, and a record that cannot be read is replaced.
 *
 * @param data,length the record's bytes, at most 1 MiB; not null.
 * @param reserved1,reserved2 0.
 * @param key        the record's name, 1 to 255 bytes.
 * @param credential the credential needed to read the record.
 * @param option     0x4001: the application's private record.
 * @return `ok`, `invalid_argument` or `storage_failed`.
 */
int ss_write(const char* data, std::size_t length, int reserved1, int reserved2, const char* key,
             const platform::SecureStorageCredential* credential, int option);

/** Releases bytes from `ss_read`; null is allowed. */
void ss_free_buffer(char* data);
