#include "secure_record.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <sodium.h>

namespace platform::secure {
namespace {

constexpr std::size_t nonce_size = crypto_secretbox_NONCEBYTES;
constexpr std::size_t overhead = nonce_size + crypto_secretbox_MACBYTES;

const unsigned char* bytes_of(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
unsigned char* bytes_of(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

/** A secret of the credential, another one for each purpose. */
std::string derive(const SecureStorageCredential& credential, const std::string& purpose) {
    std::string secret(crypto_secretbox_KEYBYTES, '\0');
    crypto_generichash(bytes_of(secret), secret.size(), bytes_of(purpose), purpose.size(),
                       reinterpret_cast<const unsigned char*>(credential.words.data()),
                       sizeof credential.words);
    return secret;
}

std::string key_of(const SecureStorageCredential& credential, std::string_view machine,
                   std::string_view name) {
    return derive(credential, std::string(machine).append(name));
}

} // namespace

std::optional<std::string> machine_identity() {
    constexpr std::size_t digits = 32;
    const auto is_digit = [](unsigned char letter) { return std::isxdigit(letter) != 0; };
    for (const char* const path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
        std::ifstream file(path);
        std::string line;
        std::getline(file, line);
        if (line.size() == digits && std::ranges::all_of(line, is_digit) && sodium_init() >= 0)
            return line;
    }
    return std::nullopt;
}

std::string owner_of(const SecureStorageCredential& credential) { return derive(credential, "owner"); }

std::string seal(std::string_view name, std::string_view data, const SecureStorageCredential& credential,
                 std::string_view machine) {
    std::string sealed(data.size() + overhead, '\0');
    auto* const nonce = bytes_of(sealed);
    randombytes_buf(nonce, nonce_size);
    crypto_secretbox_easy(nonce + nonce_size, bytes_of(data), data.size(), nonce,
                          bytes_of(key_of(credential, machine, name)));
    return sealed;
}

std::optional<std::string> open(std::string_view name, std::string_view sealed,
                                const SecureStorageCredential& credential, std::string_view machine) {
    if (sealed.size() < overhead)
        return std::nullopt;
    std::string data(sealed.size() - overhead, '\0');
    const auto* const nonce = bytes_of(sealed);
    const int result =
        crypto_secretbox_open_easy(bytes_of(data), nonce + nonce_size, sealed.size() - nonce_size, nonce,
                                   bytes_of(key_of(credential, machine, name)));
    return result == 0 ? std::optional(std::move(data)) : std::nullopt;
}

} // namespace platform::secure
