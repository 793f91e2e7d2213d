/** The secure store as the tests see it: its operations with C++ types, its files, and other processes that
 * use it. */
#pragma once

#include "platform/secure_storage.h"
#include "services/secure_store.h"
#include "support/surroundings.h"

#include <functional>
#include <gtest/gtest.h>
#include <sys/types.h>

namespace secure_store {

inline const std::filesystem::path top = "/opt/share/securestorage";
inline const std::filesystem::path folder = top / "data";
inline const std::filesystem::path file = folder / "aaba977f";
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

/** The bytes of a store with one record, sealed on a machine. */
std::string store_of(const std::string& key, const std::string& data,
                     const platform::SecureStorageCredential& by, const std::string& machine);

/** A store's bytes with the hash at their end made to fit what is before it. */
std::string with_fitting_hash(std::string bytes);

/** The text with one bit inverted. */
std::string with_flipped_bit(std::string bytes, std::size_t bit);

/** The number of files in the store's folder. */
std::ptrdiff_t file_count();

/** Runs an action in another process; the process's number. It must end by itself or be killed. */
pid_t start_process(const std::function<bool()>& action);

/** Whether a process ended by itself and its action succeeded. */
bool succeeds(pid_t process);

/** Starts every test without a store. */
class WithoutStore : public testing::Test {
protected:
    WithoutStore() { std::filesystem::remove_all(top); }
};

} // namespace secure_store
