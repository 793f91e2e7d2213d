#include "secure_record.h"

#include "common/regular_file.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <sodium.h>
#include <type_traits>

namespace platform::secure {
namespace {

constexpr std::size_t nonce_size = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr std::size_t overhead = nonce_size + crypto_aead_xchacha20poly1305_ietf_ABYTES;

const unsigned char* bytes_of(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data()); // cppcheck-suppress returnDanglingLifetime
}
unsigned char* bytes_of(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

std::string for_purpose(std::string purpose, const SecureStorageCredential& credential) {
    static_assert(std::has_unique_object_representations_v<SecureStorageCredential>);
    return purpose.append(reinterpret_cast<const char*>(&credential), sizeof credential);
}

std::string key_of(const SecureStorageCredential& credential, std::string_view machine) {
    return hash_of(for_purpose("secure storage record key 1", credential).append(machine),
                   crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
}

/** The additional data that a sealed record authenticates. */
std::string place_of(std::string_view name, const SecureStorageCredential& credential) {
    return owner_of(credential).append(name);
}

} // namespace

std::optional<std::string> machine_identity() {
    constexpr std::size_t digits = 32;
    const auto is_digit = [](unsigned char letter) { return std::isxdigit(letter) != 0; };
    for (const char* const path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
        const std::string text = read_regular_file(AT_FDCWD, path).value_or("");
        const std::string line = text.substr(0, text.find('\n'));
        if (line.size() == digits && std::ranges::all_of(line, is_digit) && sodium_init() >= 0)
            return line;
    }
    return std::nullopt;
}

std::string hash_of(std::string_view bytes, std::size_t size) {
    std::string hash(size, '\0');
    crypto_generichash(bytes_of(hash), size, bytes_of(bytes), bytes.size(), nullptr, 0);
    return hash;
}

std::string owner_of(const SecureStorageCredential& credential) {
    constexpr std::size_t size = 16;
    return hash_of(for_purpose("secure storage record owner 1", credential), size);
}

std::string seal(std::string_view name, std::string_view data, const SecureStorageCredential& credential,
                 std::string_view machine) {
    std::string sealed(data.size() + overhead, '\0');
    auto* const nonce = bytes_of(sealed);
    const std::string place = place_of(name, credential);
    randombytes_buf(nonce, nonce_size);
    crypto_aead_xchacha20poly1305_ietf_encrypt(nonce + nonce_size, nullptr, bytes_of(data), data.size(),
                                               bytes_of(place), place.size(), nullptr, nonce,
                                               bytes_of(key_of(credential, machine)));
    return sealed;
}

std::optional<std::string> open(std::string_view name, std::string_view sealed,
                                const SecureStorageCredential& credential, std::string_view machine) {
    if (sealed.size() < overhead)
        return std::nullopt;
    std::string data(sealed.size() - overhead, '\0');
    const auto* const nonce = bytes_of(sealed);
    const std::string place = place_of(name, credential);
    const int result = crypto_aead_xchacha20poly1305_ietf_decrypt(
        bytes_of(data), nullptr, nullptr, nonce + nonce_size, sealed.size() - nonce_size, bytes_of(place),
        place.size(), nonce, bytes_of(key_of(credential, machine)));
    return result == 0 ? std::optional(std::move(data)) : std::nullopt;
}

} // namespace platform::secure
