/** The encryption of one secure storage record. */
#pragma once

#include "platform/secure_storage.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform::secure {

using Bytes = std::vector<unsigned char>;
using ByteView = std::span<const unsigned char>;

/** Tells credentials apart in the store without telling what they are. */
using Owner = std::array<unsigned char, 16>;

/** A record as it lies in the store. */
struct Record {
    std::string name;
    Owner owner{};
    Bytes sealed; /**< nonce, then the encrypted bytes with their authentication tag */
};

/** Readies libsodium; needed before anything else here, harmless when repeated. False when it cannot be used. */
bool ready();

/** The fingerprint of a credential, the same on every machine. */
Owner owner_of(const SecureStorageCredential& credential);

/**
 * The machine's identity, 32 hexadecimal digits from /etc/machine-id or else /var/lib/dbus/machine-id;
 * nothing when neither holds one.
 */
std::optional<std::string> machine_identity();

/** Encrypts `data` (XChaCha20-Poly1305) for a credential on a machine; the record's name is authenticated
 * with it. */
Record seal(std::string_view name, ByteView data, const SecureStorageCredential& credential,
            std::string_view machine);

/** Decrypts a record; nothing when credential, machine, name or any byte is not the one it was sealed with. */
std::optional<Bytes> open(const Record& record, const SecureStorageCredential& credential,
                          std::string_view machine);

} // namespace platform::secure
