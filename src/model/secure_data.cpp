#include "model/secure_data.h"

#include "Log.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <platform/secure_storage.h>

namespace {

constexpr int private_record = 0x4001;

struct BufferRelease {
    void operator()(char* data) const { ss_free_buffer(data); }
};

platform::SecureStorageCredential make_credential() {
    constexpr std::array<char, 20> identity = {'v', 'e', 'l', 'm', 'o', 'r', 'a', '.', 'r', 'a',
                                               'd', 'i', 'o', '-', 'm', 'o', 'd', 'u', 'l', 'e'};
    const auto words = std::bit_cast<std::array<std::uint32_t, 5>>(identity);
    platform::SecureStorageCredential credential;
    ss_init_credential(&credential, words[0], words[1], words[2], words[3], words[4], 1, 0);
    return credential;
}

} // namespace

std::string SecureData::LoadStringData(const std::string& key) {
    const platform::SecureStorageCredential credential = make_credential();
    std::string text;
    char* data = nullptr;
    std::size_t length = 0;
    const int status = ss_read(&data, &length, 0, 0, key.c_str(), &credential, private_record);
    if (status == platform::ok && data != nullptr && length != 0) {
        const std::unique_ptr<char, BufferRelease> owner(data);
        text.assign(data, data[length - 1] == '\0' ? length - 1 : length);
    }
    LOG_ERROR("[SecureData::LoadStringData], nRet[%d]", status);
    return text;
}

void SecureData::StoreStringData(const std::string& key, const std::string& value) {
    const platform::SecureStorageCredential credential = make_credential();
    const int status =
        ss_write(value.c_str(), value.size() + 1, 0, 0, key.c_str(), &credential, private_record);
    LOG_ERROR("[SecureData::StoreStringData], nRet[%d]", status);
}
