/** The secure store as the tests see it: its operations with C++ types, and its files. */
#pragma once

#include "platform/secure_storage.h"
#include "support/surroundings.h"

#include <gtest/gtest.h>

namespace secure_store {

inline const std::filesystem::path top = "/opt/share/securestorage";
inline const std::filesystem::path folder = top / "data";
inline const std::filesystem::path file = folder / "aaba977f";
inline const std::filesystem::path temporary_file = folder / "aaba977f.new";
inline const std::filesystem::path damaged_file = folder / "aaba977f.damaged";
inline constexpr int private_record = 0x4001;

/** The credential of an application with this identity of 20 characters. */
platform::SecureStorageCredential credential(std::string_view identity = "tests.of.the.storage");

struct ReadRecord {
    int result = 0;
    std::string data;
};

/** Reads a record; it has data exactly when the result is `ok`. */
ReadRecord read(const std::string& key, const platform::SecureStorageCredential& by = credential());

/** Writes a record and tells the result. */
int write(const std::string& key, const std::string& data,
          const platform::SecureStorageCredential& by = credential());

/** The number of files in the store's folder. */
std::ptrdiff_t file_count();

/** Starts every test without a store. */
class WithoutStore : public testing::Test {
protected:
    WithoutStore() { std::filesystem::remove_all(top); }
};

} // namespace secure_store
