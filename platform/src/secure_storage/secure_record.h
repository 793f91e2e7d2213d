/** The encryption of one secure storage record. */
#pragma once

#include "platform/secure_storage.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform::secure {

/**
 * Initialises libsodium and returns the machine's identity, 32 hexadecimal digits from /etc/machine-id or else
 * /var/lib/dbus/machine-id; nothing when neither file holds one, or libsodium cannot be used.
 */
std::optional<std::string> machine_identity();

/** Returns the BLAKE2b hash of the bytes, in this many bytes. */
std::string hash_of(std::string_view bytes, std::size_t size);

/** Returns the fingerprint of a credential, the same on every machine. */
std::string owner_of(const SecureStorageCredential& credential);

/** Encrypts `data` (XChaCha20-Poly1305) for a credential on a machine, and authenticates its name: a nonce, then the bytes. */
std::string seal(std::string_view name, std::string_view data, const SecureStorageCredential& credential,
                 std::string_view machine);

/** Decrypts a record; nothing when credential, machine, name or any byte is not the one it was sealed with. */
std::optional<std::string> open(std::string_view name, std::string_view sealed,
                                const SecureStorageCredential& credential, std::string_view machine);

} // namespace platform::secure
