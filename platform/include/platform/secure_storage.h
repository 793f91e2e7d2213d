/**
 * The platform's secure storage: small records, each opened only with the credential that wrote it.
 *
 * On an ordinary Linux machine the records are kept in "/opt/share/securestorage/data/aaba977f" (mode 0600, replaced
 * atomically, its owner kept), encrypted and authenticated under a key derived from the credential and the machine's
 * identity (/etc/machine-id, else /var/lib/dbus/machine-id). The credential is in the program and the identity in a
 * file that everyone may read, so this finds damage, and keeps a store that was copied to another machine from being
 * read there. It does not protect against who can read the store on this machine: that is what its mode is for.
 * A machine without an identity has no secure storage: reading and writing answer `storage_failed`, and so they do
 * when a part of the store's path is a link, except one of root's to a folder that root alone owns and may write.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace platform {

/** The application's right to its records, filled by `ss_init_credential`. */
struct SecureStorageCredential {
    std::array<std::uint32_t, 5> words{}; /**< its 20 bytes */
    int kind = 0;                         /**< 1, an application's own */
    int flags = 0;                        /**< 0 */
};

/** Results of the secure storage; everything but `ok` is a failure and leaves outputs unwritten. */
enum SecureStorageResult : int {
    ok = 0,
    invalid_argument =
        -1,              /**< a null pointer, a key, length, kind, flag or option that is not as described */
    no_such_record = -2, /**< there is no store or no record of that key */
    not_authentic = -3,  /**< wrong credential, other machine, cut or altered data */
    storage_failed = -4, /**< the store could not be read or written */
};

} // namespace platform

/**
 * Fills a credential from the application's 20-byte credential.
 *
 * @param credential the credential to fill; not null.
 * @param word0,word1,word2,word3,word4 the 20 bytes as five 32-bit words.
 * @param kind  1, an application's own credential.
 * @param flags 0.
 * @return `ok` or `invalid_argument`.
 */
int ss_init_credential(platform::SecureStorageCredential* credential, std::uint32_t word0,
                       std::uint32_t word1, std::uint32_t word2, std::uint32_t word3, std::uint32_t word4,
                       int kind, int flags);

/**
 * Reads a record.
 *
 * @param data       receives the record's bytes, which the caller releases with `ss_free_buffer`.
 * @param length     receives their number.
 * @param reserved1,reserved2 0.
 * @param key        the record's name, 1 to 255 bytes.
 * @param credential the credential that wrote the record.
 * @param option     0x4001, the application's private record.
 * @return `ok`, `invalid_argument`, `no_such_record`, `not_authentic` or `storage_failed`.
 */
int ss_read(char** data, std::size_t* length, int reserved1, int reserved2, const char* key,
            const platform::SecureStorageCredential* credential, int option);

/**
 * Writes a record, replacing an older one of the same key and credential. After a crash at any moment the
 * store holds the old or the new record; of two processes writing at once both records are kept.
 *
 * A store that cannot be read as a whole (cut or altered) is replaced by a new one, so that a device heals by itself; a
 * record that cannot be read is replaced.
 *
 * @param data,length the record's bytes, at most 1 MiB; not null.
 * @param reserved1,reserved2 0.
 * @param key        the record's name, 1 to 255 bytes.
 * @param credential the credential that may read the record.
 * @param option     0x4001, the application's private record.
 * @return `ok`, `invalid_argument` or `storage_failed`.
 */
int ss_write(const char* data, std::size_t length, int reserved1, int reserved2, const char* key,
             const platform::SecureStorageCredential* credential, int option);

/** Releases the bytes that `ss_read` gave; null is allowed. */
void ss_free_buffer(char* data);
