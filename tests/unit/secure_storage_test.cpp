#include "secure_storage/secure_record.h"
#include "support/secure_store.h"

#include <algorithm>
#include <gmock/gmock.h>

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

TEST_F(SecureStorage, RefusesBadArguments) {
    constexpr std::size_t largest = 1024UL * 1024;
    const SecureStorageCredential good = credential();
    SecureStorageCredential bad;
    SecureStorageCredential flagged = good;
    flagged.flags = 1;
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
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(write(std::string(255, 'k'), std::string(largest, 'd')), platform::ok);
}

TEST_F(SecureStorage, FindsDamageInEveryBitAndAtEveryLength) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string good = content_of(file).value();
    const auto expect_refusal = [&good](const std::string& damaged, std::size_t place) {
        put_file(file, damaged);
        ASSERT_EQ(read("version").result, platform::not_authentic) << place << " of " << damaged.size();
    };
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        std::string flipped = good;
        flipped[bit / 8] = static_cast<char>(good[bit / 8] ^ (1 << (bit % 8)));
        expect_refusal(flipped, bit);
    }
    for (std::size_t length = 0; length < good.size(); ++length)
        expect_refusal(good.substr(0, length), length);
    for (const std::string& more : {std::string(1, '\0'), good})
        expect_refusal(good + more, good.size());
}

TEST_F(SecureStorage, OpensARecordOnItsOwnMachineInItsOwnPlaceAlone) {
    using namespace platform::secure;
    const std::string machine = machine_identity().value();
    const std::string sealed = seal("version", "7.4.10", credential(), machine);
    EXPECT_EQ(open("version", sealed, credential(), machine), "7.4.10");
    EXPECT_EQ(open("version", sealed, credential(), std::string(32, 'b')), std::nullopt);
    EXPECT_EQ(open("version", sealed, credential("another application"), machine), std::nullopt);
    EXPECT_EQ(open("other", sealed, credential(), machine), std::nullopt);
}

TEST_F(SecureStorage, ReplacesADamagedStore) {
    for (const std::string& damaged : {std::string("damaged"), std::string()}) {
        put_file(file, damaged);
        ASSERT_EQ(write("version", "1.2.9"), platform::ok) << damaged.size() << " bytes";
        EXPECT_EQ(read("version").data, "1.2.9");
        EXPECT_EQ(file_count(), 1);
    }
}

} // namespace
