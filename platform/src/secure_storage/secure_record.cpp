#include "secure_record.h"

#include <algorithm>
#include <glib.h>
#include <sodium.h>

namespace platform::secure {
namespace {

constexpr std::size_t nonce_size = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr std::size_t tag_size = crypto_aead_xchacha20poly1305_ietf_ABYTES;

using Key = std::array<unsigned char, crypto_aead_xchacha20poly1305_ietf_KEYBYTES>;

void append(Bytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

/** The credential in a fixed byte order, after the purpose it is used for. */
Bytes material(std::string_view purpose, const SecureStorageCredential& credential) {
    Bytes bytes;
    append(bytes, purpose);
    const auto append_word = [&bytes](std::uint32_t word) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<unsigned char>(word >> shift));
    };
    std::ranges::for_each(credential.words, append_word);
    append_word(static_cast<std::uint32_t>(credential.kind));
    append_word(static_cast<std::uint32_t>(credential.flags));
    return bytes;
}

Key key_of(const SecureStorageCredential& credential, std::string_view machine) {
    Bytes secret = material("secure storage record key 1", credential);
    append(secret, machine);
    Key key{};
    crypto_generichash(key.data(), key.size(), secret.data(), secret.size(), nullptr, 0);
    return key;
}

Bytes authenticated_part(const Record& record) {
    Bytes bytes(record.owner.begin(), record.owner.end());
    append(bytes, record.name);
    return bytes;
}

std::optional<std::string> identity_in(const char* path) {
    g_autofree char* text = nullptr;
    (void)g_file_get_contents(path, &text, nullptr, nullptr);
    const std::string content = text == nullptr ? "" : text;
    const std::string identity = content.substr(0, content.find('\n'));
    const bool is_identity = identity.size() == 32 && std::ranges::all_of(identity, [](unsigned char digit) {
                                 return std::isxdigit(digit) != 0;
                             });
    return is_identity ? std::optional(identity) : std::nullopt;
}

} // namespace

bool ready() { return sodium_init() >= 0; }

Owner owner_of(const SecureStorageCredential& credential) {
    const Bytes secret = material("secure storage record owner 1", credential);
    Owner owner{};
    crypto_generichash(owner.data(), owner.size(), secret.data(), secret.size(), nullptr, 0);
    return owner;
}

std::optional<std::string> machine_identity() {
    const std::optional<std::string> identity = identity_in("/etc/machine-id");
    return identity ? identity : identity_in("/var/lib/dbus/machine-id");
}

Record seal(std::string_view name, ByteView data, const SecureStorageCredential& credential,
            std::string_view machine) {
    Record record{std::string(name), owner_of(credential), Bytes(nonce_size + data.size() + tag_size)};
    const Key key = key_of(credential, machine);
    const Bytes authenticated = authenticated_part(record);
    randombytes_buf(record.sealed.data(), nonce_size);
    crypto_aead_xchacha20poly1305_ietf_encrypt(record.sealed.data() + nonce_size, nullptr, data.data(),
                                               data.size(), authenticated.data(), authenticated.size(),
                                               nullptr, record.sealed.data(), key.data());
    return record;
}

std::optional<Bytes> open(const Record& record, const SecureStorageCredential& credential,
                          std::string_view machine) {
    if (record.sealed.size() < nonce_size + tag_size)
        return std::nullopt;
    const Key key = key_of(credential, machine);
    const Bytes authenticated = authenticated_part(record);
    Bytes data(record.sealed.size() - nonce_size - tag_size);
    const int result = crypto_aead_xchacha20poly1305_ietf_decrypt(
        data.data(), nullptr, nullptr, record.sealed.data() + nonce_size, record.sealed.size() - nonce_size,
        authenticated.data(), authenticated.size(), record.sealed.data(), key.data());
    return result == 0 ? std::optional(std::move(data)) : std::nullopt;
}

} // namespace platform::secure
