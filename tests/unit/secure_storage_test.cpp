#include "support/secure_store.h"

#include <algorithm>

using namespace secure_store;

namespace {

using platform::SecureStorageCredential;

class SecureStorage : public WithoutStore {};

TEST_F(SecureStorage, KeepsRecordsApartAndReplacesThem) {
    const SecureStorageCredential other = credential("another application");
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

    EXPECT_EQ(content_of(file)->find("1.2.9"), std::string::npos) << "the record lies open in the file";
    EXPECT_EQ(file_count(), 1) << "a temporary file is left";
}

TEST_F(SecureStorage, LosesNothingWhenProcessesWriteAtOnce) {
    constexpr int writers = 4;
    constexpr int records_each = 10;
    std::vector<pid_t> processes;
    processes.reserve(writers);
    for (int writer = 0; writer < writers; ++writer) {
        processes.push_back(start_process([writer] {
            bool written = true;
            for (int record = 0; record < records_each; ++record)
                written =
                    write(std::to_string(writer * records_each + record), "own") == platform::ok &&
                    write("shared", std::string(1000, static_cast<char>('0' + writer))) == platform::ok &&
                    written;
            return written;
        }));
    }
    EXPECT_EQ(std::ranges::count_if(processes, succeeds), writers);
    for (int record = 0; record < writers * records_each; ++record)
        EXPECT_EQ(read(std::to_string(record)).data, "own") << record;
    const std::string shared = read("shared").data;
    ASSERT_EQ(shared.size(), 1000U);
    EXPECT_EQ(shared, std::string(1000, shared[0])) << "a mixture of two writers' records";
    EXPECT_EQ(file_count(), 1);
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
    EXPECT_FALSE(std::filesystem::exists(file));
}

} // namespace
