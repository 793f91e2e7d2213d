#include "support/secure_store.h"

#include <gmock/gmock.h>

using namespace secure_store;

namespace {

const std::string elsewhere(32, 'b');

std::string too_large_for_a_store() {
    std::string bytes;
    bytes.resize(17'000'000, 'x');
    return bytes;
}

class SecureStorageDamage : public WithoutStore {};

TEST_F(SecureStorageDamage, IsFoundInEveryBitAndAtEveryLength) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string good = content_of(file).value();
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        put_file(file, with_flipped_bit(good, bit));
        ASSERT_EQ(read("version").result, platform::not_authentic) << "bit " << bit;
    }
    for (std::size_t length = 0; length < good.size(); ++length) {
        put_file(file, good.substr(0, length));
        ASSERT_EQ(read("version").result, platform::not_authentic) << "length " << length;
    }
    for (const std::string& more : {std::string(1, '\0'), good, too_large_for_a_store()}) {
        put_file(file, good + more);
        EXPECT_EQ(read("version").result, platform::not_authentic) << more.size() << " bytes more";
    }
}

// Anyone can make the hash over the file fit; the record's own authentication does not depend on it.
TEST_F(SecureStorageDamage, IsFoundWhenTheHashWasMadeToFitIt) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string good = content_of(file).value();
    ASSERT_EQ(with_fitting_hash(good), good);
    const auto refused = testing::AnyOf(platform::not_authentic, platform::no_such_record);
    const std::size_t hash_size = 32;
    for (std::size_t bit = 0; bit < (good.size() - hash_size) * 8; ++bit) {
        put_file(file, with_fitting_hash(with_flipped_bit(good, bit)));
        ASSERT_THAT(read("version").result, refused) << "bit " << bit;
    }
    for (std::size_t length = hash_size; length < good.size(); ++length) {
        put_file(file, with_fitting_hash(good.substr(0, length)));
        ASSERT_THAT(read("version").result, refused) << "length " << length;
    }
}

TEST_F(SecureStorageDamage, OfOneKindIsARecordMovedFromElsewhere) {
    const std::string here = platform::secure::machine_identity().value();
    put_file(file, store_of("version", "7.4.10", credential(), here));
    EXPECT_EQ(read("version").data, "7.4.10");
    put_file(file, store_of("version", "7.4.10", credential(), elsewhere));
    EXPECT_EQ(read("version").result, platform::not_authentic);

    auto record = platform::secure::seal("version", {}, credential(), here);
    record.name = "other";
    EXPECT_EQ(platform::secure::open(record, credential(), here), std::nullopt) << "another record's place";
}

TEST_F(SecureStorageDamage, IsHealedByTheNextWriteAndKeptAside) {
    for (const std::string& damaged : {std::string("damaged"), std::string(), too_large_for_a_store()}) {
        put_file(file, damaged);
        ASSERT_EQ(write("version", "1.2.9"), platform::ok) << damaged.size() << " bytes";
        EXPECT_EQ(read("version").data, "1.2.9");
        EXPECT_TRUE(content_of(folder / "aaba977f.damaged") == damaged) << damaged.size() << " bytes";
        EXPECT_EQ(file_count(), 2);
    }
}

} // namespace
