#include "model/fw_version.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "support/log_capture.h"

#include <cstdlib>
#include <gmock/gmock.h>

using namespace std::string_literals;
using testing::Contains;

namespace {

constexpr const char* record_key = "IOT_MODULE_FW_VER";
const std::filesystem::path store_folder = "/opt/share/securestorage/data";
const std::filesystem::path mirror_file = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/fw_version";
const std::filesystem::path factory_image = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/xqZigbeeRcp-mfg";
const std::filesystem::path hub_image =
    "/opt/usr/apps/com.kelsor.orvane.plovett-hub/res/hub/config/hub-core/zigbee/xqZigbeeRcp";
const std::filesystem::path metadata_file = "/opt/usr/home/owner/apps_rw/com.kelsor.orvane.plovett-hub/data/"
                                            "hub/firmwareInfo/radioFirmwareMetadata.json";

class FirmwareVersionTest : public testing::Test {
protected:
    LogCapture log;
};

using Content = std::optional<std::string>;

void set_content(const std::filesystem::path& path, const Content& content) {
    std::filesystem::remove(path);
    if (content)
        put_file(path, *content);
}

TEST_F(FirmwareVersionTest, VersionIsDeterminedAndStoredWhenItChanges) {
    const Content missing;
    const Content cut = "7 bytes";
    const Content stored_image = "firmware\1\2\x09\1\2\3\4\5"s;
    const Content of_hub = "\7\4\x0a\1\2\3\4\5"s; // eight bytes are enough
    const Content of_factory = "firmware\xff\0\x08\1\2\3\4\5"s;
    struct Case {
        const char* stored;
        bool has_metadata;
        Content hub;
        Content factory;
        const char* version;
    };
    int row = 0;
    for (const auto& [stored, has_metadata, hub, factory, version] : {
             Case{"", false, of_hub, of_factory, "255.0.8"},
             Case{"", true, of_hub, missing, ""},
             Case{"", false, missing, cut, ""},
             Case{"1.2.9", false, of_hub, of_factory, "1.2.9"},
             Case{"1.2.9", true, of_hub, of_factory, "7.4.10"},
             Case{"1.2.9", true, stored_image, of_factory, "1.2.9"},
             Case{"1.2.9", true, missing, of_factory, ""},
             Case{"1.2.9", true, cut, of_factory, ""},
         }) {
        SCOPED_TRACE(testing::Message() << "row " << ++row);
        set_content(store_folder / "aaba977f", "a damaged store");
        if (*stored != '\0')
            SecureData::StoreStringData(record_key, stored);
        set_content(metadata_file, has_metadata ? cut : missing);
        set_content(hub_image, hub);
        set_content(factory_image, factory);
        put_file(mirror_file, "old");
        log.clear();
        EXPECT_EQ(GetVersion(), version);
        const bool is_new = version != std::string(stored);
        EXPECT_EQ(content_of(mirror_file), is_new ? version : "old");
        EXPECT_EQ(log.count("[SecureData::StoreStringData]"), is_new ? 1 : 0);
        EXPECT_EQ(log.count("fw_ver : "), *stored == '\0' || has_metadata ? 1 : 0);
        EXPECT_EQ(SecureData::LoadStringData(record_key), version);
    }
    for (const char* const path : {"/tmp", "/nowhere"})
        EXPECT_EQ(FwVersionReader().GetVersion(path), "");
    EXPECT_THAT(log.messages(), Contains("E fw_version_reader.cpp: GetVersion > /nowhere can't opent file"));
}

TEST_F(FirmwareVersionTest, FilesGetTheDeviceOwnerOnEveryCall) {
    std::filesystem::remove(metadata_file);
    std::filesystem::remove(store_folder / "aaba977f"); // a new file belongs to this account
    SecureData::StoreStringData(record_key, "1.2.3");
    put_file("/mnt/drm/securestorage/data/aaba977f", "x");
    GetVersion(); // stores nothing
    const char* const is_owner_right =
        "test \"$(stat -c %u:%g /*/*/securestorage/data/aaba977f | uniq)\" = 5001:100";
    EXPECT_TRUE(geteuid() != 0 || std::system(is_owner_right) == 0) << "only root can change an owner";
}

TEST_F(FirmwareVersionTest, LastNumberSelectsTheSerialSpeed) {
    for (const char* version :
         {"", "1.2.8", "255.0.8", "8", "1.2.-3", "9.9.", "1.2.abc", ".", "1.2.2147483648", "9.9.0x10"})
        EXPECT_EQ(get_cpcd_conf_name(version), "cpcd_115200.conf") << version;
    for (const char* version : {"1.2.9", "12", "1.2.+9", "1.2.9abc", "1.2.\t 10", "1.2.2147483647", "1.2.09"})
        EXPECT_EQ(get_cpcd_conf_name(version), "cpcd_921600.conf") << version;
    EXPECT_THAT(log.text(), testing::HasSubstr("> FW version[1.2.abc] has no usable minor number\n"));
}

} // namespace
