#include "platform/secure_storage.h"

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

/** Finds the record, or the reason why it cannot be read with this credential. */
SecureStorageResult find(const Records& records, std::string_view name, const Owner& owner, Record& found) {
    SecureStorageResult result = no_such_record;
    for (const Record& record : records) {
        if (record.name == name && record.owner == owner) {
            found = record;
            return ok;
        }
        if (record.name == name)
            result = not_authentic;
    }
    return result;
}

SecureStorageResult read(const char* name, const SecureStorageCredential& credential, Bytes& data) {
    const std::optional<std::string> machine = machine_identity();
    if (!ready() || !machine)
        return storage_failed;
    const Store store = read_store();
    if (store.result != ok)
        return store.result;
    Record record;
    const SecureStorageResult result = find(store.records, name, owner_of(credential), record);
    if (result != ok)
        return result;
    std::optional<Bytes> opened = open(record, credential, *machine);
    if (!opened)
        return not_authentic;
    data = std::move(*opened);
    return ok;
}

SecureStorageResult write(const char* name, const SecureStorageCredential& credential, ByteView data) {
    const std::optional<std::string> machine = machine_identity();
    if (!ready() || !machine)
        return storage_failed;
    const Record sealed = seal(name, data, credential, *machine);
    return change_store([&sealed](Records& records) {
        std::erase_if(records, [&sealed](const Record& record) {
            return record.name == sealed.name && record.owner == sealed.owner;
        });
        records.push_back(sealed);
    });
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
    secure::Bytes bytes;
    const SecureStorageResult result = secure::read(key, *credential, bytes);
    if (result != ok)
        return result;
    // One byte more, so that an empty record is not null. NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
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
    const secure::ByteView bytes(reinterpret_cast<const unsigned char*>(data), length);
    return secure::write(key, *credential, bytes);
}

void ss_free_buffer(char* data) { std::free(data); } // NOLINT(cppcoreguidelines-owning-memory)
