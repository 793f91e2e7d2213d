#include "support/secure_store.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>

namespace secure_store {

using platform::SecureStorageCredential;

SecureStorageCredential credential(std::string_view identity) {
    std::array<char, 20> characters{};
    std::ranges::copy(identity, characters.begin());
    const auto words = std::bit_cast<std::array<std::uint32_t, 5>>(characters);
    SecureStorageCredential made;
    EXPECT_EQ(ss_init_credential(&made, words[0], words[1], words[2], words[3], words[4], 1, 0),
              platform::ok);
    return made;
}

ReadRecord read(const std::string& key, const SecureStorageCredential& by) {
    char* data = nullptr;
    std::size_t length = 0;
    const int result = ss_read(&data, &length, 0, 0, key.c_str(), &by, private_record);
    const std::unique_ptr<char, decltype(&ss_free_buffer)> owned(data, ss_free_buffer);
    EXPECT_EQ(data != nullptr, result == platform::ok);
    return {result, data != nullptr ? std::string(data, length) : ""};
}

int write(const std::string& key, const std::string& data, const SecureStorageCredential& by) {
    return ss_write(data.data(), data.size(), 0, 0, key.c_str(), &by, private_record);
}

std::ptrdiff_t file_count() { return std::distance(std::filesystem::directory_iterator(folder), {}); }

} // namespace secure_store
