/** Encrypts and decrypts one record of the secure storage. */
#pragma once

#include "platform/secure_storage.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform::secure {

/**
 * Initialises libsodium and returns the machine's identity, 32 hexadecimal digits from /etc/machine-id or else
 * /var/lib/dbus/machine-id; nothing if neither file contains an identity or libsodium fails to initialise.
 */
std::optional<std::string> machine_identity();

/** Returns the BLAKE2b hash of the bytes, `size` bytes long. */
std::string hash_of(std::string_view bytes, std::size_t size);

/** Returns the fingerprint of a credential, the same on every machine. */
std::string owner_of(const SecureStorageCredential& credential);

/** Encrypts `data` (XChaCha20-Poly1305) for a credential and machine, authenticates the name, prepends the nonce. */
std::string seal(std::string_view name, std::string_view data, const SecureStorageCredential& credential,
                 std::string_view machine);

/** Decrypts a record; returns nothing if the credential, machine, name or any byte differs. */
std::optional<std::string> open(std::string_view name, std::string_view sealed,
                                const SecureStorageCredential& credential, std::string_view machine);

} // namespace platform::secure
