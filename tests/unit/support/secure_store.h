/** The secure storage's operations with C++ types, and its file. */
#pragma once

#include "platform/secure_storage.h"
#include "support/environment.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <memory>

namespace secure_store {

inline const std::filesystem::path top = "/opt/share/securestorage";
inline const std::filesystem::path folder = top / "data";
inline const std::filesystem::path file = folder / "aaba977f";
inline constexpr int private_record = 0x4001;

/** The credential of an application with this identity of 20 characters. */
inline platform::SecureStorageCredential credential(std::string_view identity = "tests.of.the.storage") {
    std::array<char, 20> characters{};
    std::ranges::copy(identity, characters.begin());
    const auto words = std::bit_cast<std::array<std::uint32_t, 5>>(characters);
    platform::SecureStorageCredential made;
    EXPECT_EQ(ss_init_credential(&made, words[0], words[1], words[2], words[3], words[4], 1, 0),
              platform::ok);
    return made;
}

struct ReadRecord {
    int result = 0;
    std::string data;
    bool operator==(const ReadRecord&) const = default;
};

/** Reads a record; the data is non-null exactly if the result is `ok`. */
inline ReadRecord read(const std::string& key, const platform::SecureStorageCredential& by = credential()) {
    char* data = nullptr;
    std::size_t length = 0;
    const int result = ss_read(&data, &length, 0, 0, key.c_str(), &by, private_record);
    const std::unique_ptr<char, decltype(&ss_free_buffer)> owned(data, ss_free_buffer);
    EXPECT_EQ(data != nullptr, result == platform::ok);
    return {result, data != nullptr ? std::string(data, length) : ""};
}

/** Writes a record and returns the result. */
inline int write(const std::string& key, const std::string& data,
                 const platform::SecureStorageCredential& by = credential()) {
    return ss_write(data.data(), data.size(), 0, 0, key.c_str(), &by, private_record);
}

/** Starts every test without a store. */
class WithoutStore : public testing::Test {
protected:
    WithoutStore() { std::filesystem::remove_all(top); }
};

} // namespace secure_store
