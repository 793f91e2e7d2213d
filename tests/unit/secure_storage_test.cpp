#include "model/secure_data.h"
#include "secure_storage/secure_record.h"
#include "support/files.h"

#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const fs::path top = "/opt/share/securestorage";
const fs::path folder = top / "data";
const fs::path file = folder / "aaba977f";

struct Killed {};
thread_local std::string calls; // w: write, f: fsync of the file, d: fsync of a folder
thread_local std::size_t allowed_calls = std::string::npos;

// Records a call, or throws, which leaves the files as a killed process does.
void record(char call) {
    if (calls.size() == allowed_calls)
        throw Killed();
    calls += call;
}

} // namespace

// Replace the C library's functions at link time (-Wl,--wrap=write, for example).
extern "C" {
decltype(write) __real_write;
ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    record('w');
    return __real_write(descriptor, bytes, size);
}

decltype(fsync) __real_fsync;
int __wrap_fsync(int descriptor) {
    // While the new file exists, only that file is synced; before and after that, only folders are.
    const bool is_new_file = fs::exists(folder / "aaba977f.new");
    record(is_new_file ? 'f' : 'd');
    return __real_fsync(descriptor);
}
}

namespace {

using platform::SecureStorageCredential;

constexpr int private_record = 0x4001;

SecureStorageCredential credential(std::uint32_t last_word = 5) {
    SecureStorageCredential made;
    EXPECT_EQ(ss_init_credential(&made, 1, 2, 3, 4, last_word, 1, 0), platform::ok);
    return made;
}

struct ReadRecord {
    int result = 0;
    std::string data;
};

ReadRecord read(const std::string& key, const SecureStorageCredential& by = credential()) {
    char* data = nullptr;
    std::size_t length = 0;
    const int result = ss_read(&data, &length, 0, 0, key.c_str(), &by, private_record);
    const std::unique_ptr<char, decltype(&ss_free_buffer)> owned(data, ss_free_buffer);
    EXPECT_EQ(data != nullptr, result == platform::ok);
    return {result, data != nullptr ? std::string(data, length) : ""};
}

int write(const std::string& key, const std::string& data, const SecureStorageCredential& by = credential()) {
    return ss_write(data.data(), data.size(), 0, 0, key.c_str(), &by, private_record);
}

// Starts every test without a store.
class SecureStorage : public testing::Test {
protected:
    SecureStorage() { fs::remove_all(top); }
};

TEST_F(SecureStorage, KeepsRecordsSeparateAndReplacesThem) {
    const SecureStorageCredential other = credential(6);
    EXPECT_EQ(read("version").result, platform::no_such_record);
    const std::string version("7.4.10\0", 7);
    ASSERT_EQ(write("version", version), platform::ok);
    ASSERT_EQ(write("other", ""), platform::ok);
    EXPECT_EQ(read("version", other).result, platform::not_authentic);
    ASSERT_EQ(write("version", "of another application", other), platform::ok);
    EXPECT_EQ(read("version").data, version);
    EXPECT_EQ(read("other").result, platform::ok);
    ASSERT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(read("version", other).data, "of another application");
    EXPECT_EQ(read("none").result, platform::no_such_record);
    EXPECT_EQ(content_of(file).find("1.2.9"), std::string::npos) << "not encrypted";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "a temporary file was left";
}

// Records on devices in the field must stay readable; a record without a terminating NUL is complete, too.
TEST_F(SecureStorage, ApplicationKeepsItsCredentialAndTheTerminatingNul) {
    SecureStorageCredential application{.words = {}, .kind = 1};
    std::memcpy(application.words.data(), "velmora.radio-module", sizeof application.words);
    SecureData::StoreStringData("key", "7.4.10");
    EXPECT_EQ(read("key", application).data, std::string("7.4.10\0", 7));
    ASSERT_EQ(write("key", "1.2.9", application), platform::ok);
    EXPECT_EQ(SecureData::LoadStringData("key"), "1.2.9");
}

TEST_F(SecureStorage, RefusesBadArguments) {
    constexpr std::size_t largest = 1024UL * 1024;
    const SecureStorageCredential good = credential();
    SecureStorageCredential bad;
    const SecureStorageCredential flagged{.words = {}, .kind = 1, .flags = 1};
    std::size_t length = 0;
    EXPECT_THAT(
        std::vector({ss_init_credential(nullptr, 1, 2, 3, 4, 5, 1, 0),
                     ss_init_credential(&bad, 1, 2, 3, 4, 5, 1, 1),
                     ss_init_credential(&bad, 1, 2, 3, 4, 5, 2, 0), write("key", "data", bad),
                     write("key", "data", flagged), write("", "data"), write(std::string(256, 'k'), "data"),
                     write("key", std::string(largest + 1, 'd')),
                     ss_write(nullptr, 0, 0, 0, "key", &good, private_record),
                     ss_write("d", 1, 0, 0, "key", &good, 0x4002),
                     ss_write("d", 1, 0, 0, "key", nullptr, private_record),
                     ss_read(nullptr, &length, 0, 0, "key", &good, private_record)}),
        testing::Each(platform::invalid_argument));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(write(std::string(255, 'k'), std::string(largest, 'd')), platform::ok);
}

TEST_F(SecureStorage, DamagedFileNeverReturnsWrongDataAndIsReplacedByTheNextWrite) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string good = content_of(file);
    std::vector<std::string> damages{"damaged", good + '\0', good + good,
                                     good + std::string(17'000'000, 'x')};
    for (std::size_t byte = 0; byte < good.size(); ++byte) {
        damages.push_back(good.substr(0, byte));
        (damages.emplace_back(good))[byte] ^= 1;
    }
    for (const std::string& damaged : damages) {
        put_file(file, damaged);
        ASSERT_EQ(read("version").result, platform::not_authentic) << damaged.substr(0, good.size());
        ASSERT_EQ(write("version", "1.2.9"), platform::ok) << damaged.size() << " bytes";
        ASSERT_EQ(read("version").data, "1.2.9");
    }
}

TEST_F(SecureStorage, RecordOpensOnlyOnItsMachineAndUnderItsName) {
    using namespace platform::secure;
    const std::string machine = machine_identity().value();
    const std::string sealed = seal("version", "7.4.10", credential(), machine);
    EXPECT_EQ(open("version", sealed, credential(), machine), "7.4.10");
    EXPECT_EQ(open("version", sealed, credential(), std::string(32, 'b')), std::nullopt);
    EXPECT_EQ(open("other", sealed, credential(), machine), std::nullopt);
}

TEST_F(SecureStorage, ModesIgnoreTheUmaskAndTheOwnerIsKept) {
    const fs::path share = top.parent_path();
    const fs::path aside = "/opt/share.aside";
    fs::rename(share, aside);
    for (const mode_t mask : {0000U, 0777U}) {
        const mode_t before = umask(mask);
        EXPECT_EQ(write("version", "7.4.10"), platform::ok);
        EXPECT_EQ(chmod(file.c_str(), 0666), 0);
        EXPECT_EQ(write("version", "1.2.9"), platform::ok) << "a store with open permissions";
        umask(before);
        for (const auto& [path, mode] :
             {std::pair{share, 0755U}, {top, 0700U}, {folder, 0700U}, {file, 0600U}})
            EXPECT_EQ(fs::status(path).permissions(), fs::perms{mode}) << path << ", umask " << mask;
        const bool is_given_away = chown(file.c_str(), 1234, 5678) == 0; // succeeds only for root
        EXPECT_EQ(write("version", "1.2.9"), platform::ok);
        const char* const is_owner_kept =
            "test $(stat -c %u:%g /opt/share/securestorage/data/aaba977f) = 1234:5678";
        EXPECT_EQ(std::system(is_owner_kept) == 0, is_given_away);
        fs::remove_all(share);
    }
    fs::rename(aside, share);
}

TEST_F(SecureStorage, RefusesOtherFilesAndUnsafeLinks) {
    for (const std::string command :
         {"mkdir -p data/aaba977f", "mkdir data; mkfifo data/aaba977f", "mkdir data; ln -s aaba977f data",
          "mkdir data; ln -s ../elsewhere/aaba977f data", "touch data", "ln -s elsewhere data",
          "ln -s elsewhere data; chown -h 1234 data", "ln -s elsewhere data; chown 1234 elsewhere",
          "ln -s elsewhere data; chmod g+w elsewhere", "ln -s elsewhere data; chmod o+w elsewhere"}) {
        SCOPED_TRACE(command);
        fs::remove_all(top);
        ASSERT_EQ(write("version", "7.4.10"), platform::ok);
        const std::string good = content_of(file);
        const int status = std::system(("cd " + top.string() + "; mv data elsewhere; " + command).c_str());
        EXPECT_TRUE(status == 0 || geteuid() != 0) << "only root can change an owner";
        // Only a link owned by root, to a folder that only root can write, is followed.
        const bool is_followed = command == "ln -s elsewhere data" && geteuid() == 0;
        EXPECT_EQ(read("version").result, is_followed ? platform::ok : platform::storage_failed);
        EXPECT_EQ(write("version", "1.2.9"), is_followed ? platform::ok : platform::storage_failed);
        EXPECT_EQ(content_of(top / "elsewhere" / "aaba977f") == good, !is_followed);
    }
}

TEST_F(SecureStorage, ContainsTheOldOrNewRecordWhereverAWriteIsKilled) {
    for (const std::string old : {"", "old"}) {
        bool is_killed = true;
        for (std::size_t stop = 0; is_killed; ++stop) {
            SCOPED_TRACE(testing::Message() << "old record: '" << old << "', stop " << stop);
            fs::remove_all(top);
            if (!old.empty())
                write("version", old);
            calls.clear();
            allowed_calls = stop;
            try {
                EXPECT_EQ(write("version", "new"), platform::ok);
                is_killed = false;
                // New folders are synced; the file is written and synced; its folder is synced.
                EXPECT_THAT(calls, testing::ContainsRegex(old.empty() ? "^ddw+fd$" : "^w+fd$"));
            } catch (const Killed&) {
            }
            allowed_calls = std::string::npos;
            const auto [result, data] = read("version");
            EXPECT_EQ(result, data.empty() ? platform::no_such_record : platform::ok);
            EXPECT_TRUE(data == "new" || (is_killed && data == old)) << data;
            ASSERT_EQ(write("version", "newer"), platform::ok);
            ASSERT_EQ(read("version").data, "newer");
        }
    }
}

TEST_F(SecureStorage, KeepsTheRecordsOfConcurrentWriters) {
    std::vector<std::jthread> writers;
    for (const std::string key : {"first", "second", "third", "fourth"})
        writers.emplace_back([key] {
            for (int time = 0; time < 25; ++time) {
                EXPECT_EQ(write(key, key), platform::ok);
                EXPECT_EQ(read(key).data, key);
            }
        });
}

} // namespace
