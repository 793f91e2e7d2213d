#include "model/fw_version.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "support/log_capture.h"
#include "support/secure_store.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::SizeIs;

namespace {

constexpr const char* record_key = "IOT_MODULE_FW_VER";
const std::filesystem::path mirror_file = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/fw_version";
const std::filesystem::path factory_image = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/xqZigbeeRcp-mfg";
const std::filesystem::path hub_image =
    "/opt/usr/apps/com.kelsor.orvane.plovett-hub/res/hub/config/hub-core/zigbee/xqZigbeeRcp";
const std::filesystem::path metadata_file = "/opt/usr/home/owner/apps_rw/com.kelsor.orvane.plovett-hub/data/"
                                            "hub/firmwareInfo/radioFirmwareMetadata.json";

std::string image(int a, int b, int c) {
    return "firmware" + std::string{static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)} +
           "\1\2\3\4\5";
}

class FirmwareVersionTest : public secure_store::WithoutStore {
protected:
    LogCapture log;
};

TEST_F(FirmwareVersionTest, SecureTextsRoundTripAndKeepTheCredential) {
    EXPECT_EQ(SecureData::LoadStringData(record_key), "");
    for (const std::string text : {"7.4.10", "", "x"}) {
        SecureData::StoreStringData(record_key, text);
        EXPECT_EQ(SecureData::LoadStringData(record_key), text);
    }
    // Records of devices in the field must stay readable, and one without a terminating NUL is complete too.
    const auto application = secure_store::credential("velmora.radio-module");
    EXPECT_EQ(secure_store::read(record_key, application).data, std::string("x\0", 2));
    ASSERT_EQ(secure_store::write(record_key, "1.2.3", application), platform::ok);
    EXPECT_EQ(SecureData::LoadStringData(record_key), "1.2.3");
}

enum class Store { empty, damaged, with_version };

using Image = std::optional<std::string>;

void put_image(const std::filesystem::path& path, const Image& content) {
    std::filesystem::remove(path);
    if (content)
        put_file(path, *content);
}

TEST_F(FirmwareVersionTest, VersionIsDeterminedAndStoredWhenItChanges) {
    const Image missing;
    const Image cut = "7 bytes";
    const Image stored = image(1, 2, 9);
    const Image of_hub = image(7, 4, 10).substr(8); // eight bytes are enough
    const Image of_factory = image(255, 0, 8);
    struct Case {
        Store store;
        bool has_metadata;
        Image hub;
        Image factory;
        const char* version;
        bool is_remembered; // in the secure store and in the version file
    };
    int row = 0;
    for (const auto& [store, has_metadata, hub, factory, version, is_remembered] :
         {Case{Store::empty, false, of_hub, of_factory, "255.0.8", true},
          Case{Store::empty, true, of_hub, of_factory, "255.0.8", true},
          Case{Store::empty, true, of_hub, missing, "", false},
          Case{Store::empty, false, missing, cut, "", false},
          Case{Store::damaged, false, of_hub, of_factory, "255.0.8", true},
          Case{Store::with_version, false, of_hub, of_factory, "1.2.9", false},
          Case{Store::with_version, true, of_hub, of_factory, "7.4.10", true},
          Case{Store::with_version, true, stored, of_factory, "1.2.9", false},
          Case{Store::with_version, true, missing, of_factory, "", true},
          Case{Store::with_version, true, cut, of_factory, "", true}}) {
        SCOPED_TRACE(testing::Message() << "row " << ++row);
        std::filesystem::remove_all(secure_store::top);
        if (store != Store::empty)
            SecureData::StoreStringData(record_key, "1.2.9");
        if (store == Store::damaged)
            std::filesystem::resize_file(secure_store::file, 50);
        put_image(metadata_file, has_metadata ? cut : missing);
        put_image(hub_image, hub);
        put_image(factory_image, factory);
        put_file(mirror_file, "old");
        log.clear();
        EXPECT_EQ(GetVersion(), version);
        EXPECT_EQ(content_of(mirror_file), is_remembered ? version : "old");
        EXPECT_THAT(log.messages_of("secure_data.cpp: StoreStringData"), SizeIs(is_remembered ? 1 : 0));
        EXPECT_THAT(log.messages_of("fw_version_reader.cpp: GetVersion").empty(),
                    store == Store::with_version && !has_metadata);
        EXPECT_EQ(SecureData::LoadStringData(record_key), version);
    }
    for (const char* const path : {"/tmp", "/nowhere"})
        EXPECT_EQ(FwVersionReader().GetVersion(path), "");
    EXPECT_THAT(log.text(), testing::HasSubstr("> /nowhere can't opent file\n"));
}

TEST_F(FirmwareVersionTest, FilesGetTheDeviceOwnerOnEveryCall) {
    const std::filesystem::path other_store = "/mnt/drm/securestorage/data/aaba977f";
    put_file(other_store, "x");
    if (chown(other_store.c_str(), 5001, 0) != 0) {
        ASSERT_EQ(std::getenv("VELMORA_SKIPS_NOTHING"), nullptr) << "this needs root privileges";
        GTEST_SKIP() << "this sandbox has no other users";
    }
    SecureData::StoreStringData(record_key, "1.2.3");
    GetVersion(); // stores nothing, but still changes the owner of the store's files
    for (const auto& file : {secure_store::file, other_store}) {
        struct stat status {};
        ASSERT_EQ(stat(file.c_str(), &status), 0) << file;
        EXPECT_EQ(status.st_uid, 5001U) << file;
        EXPECT_EQ(status.st_gid, 100U) << file;
    }
}

TEST_F(FirmwareVersionTest, LastNumberSelectsTheSerialSpeed) {
    for (const char* version :
         {"", "1.2.8", "255.0.8", "8", "1.2.-3", "9.9.", "1.2.abc", ".", "1.2.2147483648", "9.9.0x10"})
        EXPECT_EQ(get_cpcd_conf_name(version), "cpcd_115200.conf") << version;
    for (const char* version : {"1.2.9", "12", "1.2.+9", "1.2.9abc", "1.2.\t 10", "1.2.2147483647", "1.2.09"})
        EXPECT_EQ(get_cpcd_conf_name(version), "cpcd_921600.conf") << version;
    EXPECT_THAT(log.messages_of("process_lifecycle.cpp: get_cpcd_conf_name"),
                testing::Contains("FW version[1.2.abc] has no usable minor number"));
}

} // namespace
