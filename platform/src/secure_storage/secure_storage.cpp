#include "platform/secure_storage.h"

#include "secure_record.h"
#include "secure_store.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace platform::secure {
namespace {

constexpr int own_credential = 1;
constexpr int private_record = 0x4001;
constexpr std::size_t longest_name = 255;
constexpr std::size_t largest_record = 1U << 20U;

bool are_valid(const char* key, const SecureStorageCredential* credential, int reserved1, int reserved2,
               int option) {
    return key != nullptr && *key != '\0' && std::strlen(key) <= longest_name && credential != nullptr &&
           credential->kind == own_credential && credential->flags == 0 && reserved1 == 0 && reserved2 == 0 &&
           option == private_record;
}

SecureStorageResult read(const std::string& name, const SecureStorageCredential& credential,
                         std::string& data) {
    const std::optional<std::string> machine = machine_identity();
    if (!machine)
        return storage_failed;
    const Store store = read_store();
    if (store.result != ok)
        return store.result;
    const auto record = store.records.find({name, owner_of(credential)});
    if (record == store.records.end()) {
        const auto has_name = [&name](const auto& other) { return other.first.first == name; };
        return std::ranges::any_of(store.records, has_name) ? not_authentic : no_such_record;
    }
    std::optional<std::string> opened = open(name, record->second, credential, *machine);
    if (!opened)
        return not_authentic;
    data = std::move(*opened);
    return ok;
}

SecureStorageResult write(const std::string& name, const SecureStorageCredential& credential,
                          std::string_view data) {
    const std::optional<std::string> machine = machine_identity();
    if (!machine)
        return storage_failed;
    return put_record({{name, owner_of(credential)}, seal(name, data, credential, *machine)});
}

} // namespace
} // namespace platform::secure

using namespace platform;

int ss_init_credential(SecureStorageCredential* credential, std::uint32_t word0, std::uint32_t word1,
                       std::uint32_t word2, std::uint32_t word3, std::uint32_t word4, int kind, int flags) {
    if (credential == nullptr)
        return invalid_argument;
    *credential = {};
    if (kind != secure::own_credential || flags != 0)
        return invalid_argument;
    *credential = {{word0, word1, word2, word3, word4}, kind, flags};
    return ok;
}

int ss_read(char** data, std::size_t* length, int reserved1, int reserved2, const char* key,
            const SecureStorageCredential* credential, int option) {
    if (data == nullptr || length == nullptr ||
        !secure::are_valid(key, credential, reserved1, reserved2, option))
        return invalid_argument;
    std::string bytes;
    const SecureStorageResult result = secure::read(key, *credential, bytes);
    if (result != ok)
        return result;
    // One extra byte, so that an empty record is not null. NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    auto* const copy = static_cast<char*>(std::calloc(bytes.size() + 1, 1));
    if (copy == nullptr)
        return storage_failed;
    std::ranges::copy(bytes, copy);
    *data = copy;
    *length = bytes.size();
    return ok;
}

int ss_write(const char* data, std::size_t length, int reserved1, int reserved2, const char* key,
             const SecureStorageCredential* credential, int option) {
    if (data == nullptr || length > secure::largest_record ||
        !secure::are_valid(key, credential, reserved1, reserved2, option))
        return invalid_argument;
    return secure::write(key, *credential, {data, length});
}

void ss_free_buffer(char* data) { std::free(data); } // NOLINT(cppcoreguidelines-owning-memory)
