#include "platform/secure_storage.h"

#include "services/secure_record.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using platform::SecureStorageCredential;

const fs::path folder = "/opt/share/securestorage/data";
const fs::path store = folder / "aaba977f";
constexpr int private_record = 0x4001;

SecureStorageCredential credential(std::uint32_t first = 1) {
    SecureStorageCredential made;
    EXPECT_EQ(ss_init_credential(&made, first, 2, 3, 4, 5, 1, 0), platform::ok);
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

std::string file_text(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void set_file(const std::string& bytes) { std::ofstream(store, std::ios::binary) << bytes; }

class SecureStorage : public testing::Test {
protected:
    SecureStorage() { fs::remove_all("/opt/share/securestorage"); }
};

TEST_F(SecureStorage, KeepsRecordsApartAndReplacesThem) {
    EXPECT_EQ(read("version").result, platform::no_such_record);
    const std::string version("7.4.10\0", 7);
    ASSERT_EQ(write("version", version), platform::ok);
    ASSERT_EQ(write("other", ""), platform::ok);
    ASSERT_EQ(write("version", "of another application", credential(9)), platform::ok);
    EXPECT_EQ(read("version").data, version);
    EXPECT_EQ(read("other").result, platform::ok);
    ASSERT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(read("version", credential(9)).data, "of another application");
    EXPECT_EQ(read("none").result, platform::no_such_record);

    const std::string file = file_text(store);
    EXPECT_EQ(file.find("1.2.9"), std::string::npos) << "the record lies open in the file";
    EXPECT_EQ(fs::status(store).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "a temporary file is left";
}

TEST_F(SecureStorage, RefusesTheWrongCredentialAndTheWrongMachine) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    EXPECT_EQ(read("version", credential(2)).result, platform::not_authentic);

    const std::string here(32, 'a');
    const std::string elsewhere(32, 'b');
    const std::string text = "7.4.10";
    const platform::secure::Bytes data(text.begin(), text.end());
    platform::secure::Record record = platform::secure::seal("version", data, credential(), here);
    EXPECT_EQ(platform::secure::open(record, credential(), here), data);
    EXPECT_EQ(platform::secure::open(record, credential(), elsewhere), std::nullopt);
    record.name = "other";
    EXPECT_EQ(platform::secure::open(record, credential(), here), std::nullopt) << "moved to another name";
}

TEST_F(SecureStorage, FindsEveryFlippedBitAndEveryCut) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string good = file_text(store);
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        std::string bad = good;
        bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << (bit % 8)));
        set_file(bad);
        ASSERT_EQ(read("version").result, platform::not_authentic) << "bit " << bit;
    }
    for (std::size_t length = 0; length < good.size(); ++length) {
        set_file(good.substr(0, length));
        ASSERT_EQ(read("version").result, platform::not_authentic) << "length " << length;
    }
    set_file(good + good);
    EXPECT_EQ(read("version").result, platform::not_authentic);
}

TEST_F(SecureStorage, HealsADamagedStoreAndKeepsItAside) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    set_file("damaged");
    ASSERT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(file_text(folder / "aaba977f.damaged"), "damaged");
}

TEST_F(SecureStorage, AnswersAnErrorWhenTheStoreIsNoFile) {
    fs::create_directories(store);
    EXPECT_EQ(read("version").result, platform::storage_failed);
    EXPECT_EQ(write("version", "7.4.10"), platform::storage_failed);
}

TEST_F(SecureStorage, LosesNothingWhenProcessesWriteAtOnce) {
    constexpr int writers = 4;
    constexpr int records_each = 10;
    for (int writer = 0; writer < writers; ++writer) {
        if (fork() == 0) {
            bool written = true;
            for (int record = 0; record < records_each; ++record)
                written =
                    write(std::to_string(writer * records_each + record), "x") == platform::ok && written;
            _exit(written ? 0 : 1);
        }
    }
    for (int status = 0; wait(&status) > 0;)
        EXPECT_EQ(status, 0);
    for (int record = 0; record < writers * records_each; ++record)
        EXPECT_EQ(read(std::to_string(record)).data, "x") << record;
}

TEST_F(SecureStorage, RefusesBadArguments) {
    const SecureStorageCredential good = credential();
    SecureStorageCredential bad;
    EXPECT_EQ(ss_init_credential(nullptr, 1, 2, 3, 4, 5, 1, 0), platform::invalid_argument);
    EXPECT_EQ(ss_init_credential(&bad, 1, 2, 3, 4, 5, 2, 0), platform::invalid_argument);
    EXPECT_EQ(write("key", "data", bad), platform::invalid_argument);
    EXPECT_EQ(write("", "data"), platform::invalid_argument);
    EXPECT_EQ(write(std::string(256, 'k'), "data"), platform::invalid_argument);
    EXPECT_EQ(write("key", std::string(1024 * 1024 + 1, 'd')), platform::invalid_argument);
    EXPECT_EQ(ss_write(nullptr, 0, 0, 0, "key", &good, private_record), platform::invalid_argument);
    EXPECT_EQ(ss_write("d", 1, 0, 0, "key", &good, 0x4002), platform::invalid_argument);
    EXPECT_EQ(ss_write("d", 1, 0, 0, "key", nullptr, private_record), platform::invalid_argument);
    std::size_t length = 0;
    EXPECT_EQ(ss_read(nullptr, &length, 0, 0, "key", &good, private_record), platform::invalid_argument);
    EXPECT_FALSE(fs::exists(store));
}

} // namespace
