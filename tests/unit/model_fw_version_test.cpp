#include "model/fw_version.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "support/log_capture.h"
#include "support/secure_store.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;

namespace {

constexpr const char* record_key = "IOT_MODULE_FW_VER";
const std::filesystem::path& store_file = secure_store::file;
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

class FirmwareVersionTest : public testing::Test {
protected:
    FirmwareVersionTest() {
        for (const auto& file : {store_file, mirror_file, factory_image, hub_image, metadata_file}) {
            std::filesystem::create_directories(file.parent_path());
            std::filesystem::remove_all(file);
        }
    }
    LogCapture log;
};

TEST_F(FirmwareVersionTest, ImageTrailerHoldsTheVersion) {
    const std::string path = "/tmp/velmora-image";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {image(7, 4, 10), "7.4.10"},
        {image(255, 0, 8), "255.0.8"},
        {std::string("\1\2\11\0\0\0\0\0", 8), "1.2.9"},
        {std::string(100'000, 'x') + image(0, 0, 0), "0.0.0"},
        {"1234567", ""},
        {"", ""},
    };
    for (const auto& [content, version] : cases) {
        put_file(path, content);
        EXPECT_EQ(FwVersionReader::GetVersion(path), version);
    }
    log.clear();
    EXPECT_EQ(FwVersionReader::GetVersion("/tmp/no-such-image"), "");
    EXPECT_THAT(log.messages(),
                ElementsAre("E fw_version_reader.cpp: GetVersion > /tmp/no-such-image can't opent file",
                            "E fw_version_reader.cpp: GetVersion > fw_ver : "));
    EXPECT_EQ(FwVersionReader::GetVersion("/tmp"), "");
}

TEST_F(FirmwareVersionTest, SecureTextsComeBackWholeAndTheCredentialStays) {
    EXPECT_EQ(SecureData::LoadStringData(record_key), "");
    for (const std::string text : {"7.4.10", "", "x"}) {
        SecureData::StoreStringData(record_key, text);
        EXPECT_EQ(SecureData::LoadStringData(record_key), text);
    }
    EXPECT_THAT(log.messages_of("secure_data.cpp: StoreStringData").back(),
                "[SecureData::StoreStringData], nRet[0]");
    EXPECT_THAT(log.messages_of("secure_data.cpp: LoadStringData").front(),
                testing::StartsWith("[SecureData::LoadStringData], nRet[-"));

    // Records of devices in the field must stay readable, and one without a NUL at its end is whole too.
    const auto application = secure_store::credential("velmora.radio-module");
    EXPECT_EQ(secure_store::read(record_key, application).data, std::string("x\0", 2));
    ASSERT_EQ(secure_store::write(record_key, "1.2.3", application), platform::ok);
    EXPECT_EQ(SecureData::LoadStringData(record_key), "1.2.3");
}

TEST_F(FirmwareVersionTest, StoredVersionThenHubThenFactoryDecides) {
    struct Case {
        const char* stored;
        bool metadata;
        std::string hub;
        std::string factory;
        const char* version;
        const char* mirror; // "old" as long as nothing is stored
    };
    const std::string factory = image(7, 4, 8);
    const std::string hub = image(7, 4, 10);
    const std::vector<Case> cases = {
        {"", false, hub, factory, "7.4.8", "7.4.8"},
        {"", true, hub, factory, "7.4.8", "7.4.8"},
        {"1.2.9", false, hub, factory, "1.2.9", "old"},
        {"1.2.9", true, hub, factory, "7.4.10", "7.4.10"},
        {"7.4.10", true, hub, factory, "7.4.10", "old"},
        {"1.2.9", true, "", factory, "", ""},
        {"", false, hub, "", "", "old"},
    };
    for (const auto& [stored, metadata, hub_content, factory_content, version, mirror] : cases) {
        SCOPED_TRACE(testing::Message() << "stored " << stored << ", metadata " << metadata);
        std::filesystem::remove(store_file);
        if (*stored != '\0')
            SecureData::StoreStringData(record_key, stored);
        put_file(hub_image, hub_content);
        put_file(factory_image, factory_content);
        put_file(mirror_file, "old");
        std::filesystem::remove(metadata_file);
        if (metadata)
            put_file(metadata_file, "not read");
        log.clear();
        EXPECT_EQ(GetVersion(), version);
        EXPECT_EQ(content_of(mirror_file), mirror);
        EXPECT_EQ(SecureData::LoadStringData(record_key), version);
        EXPECT_EQ(log.messages_of("secure_data.cpp: StoreStringData").size(),
                  mirror == std::string("old") ? 0 : 1);
        EXPECT_THAT(
            log.messages_of("fw_version.cpp: GetVersion"),
            ElementsAre(std::string("stored ver[") + stored + "]", std::string("FW ver[") + version + "]"));
    }
}

TEST_F(FirmwareVersionTest, FilesBelongToTheDeviceOwnerWhereThatIsAllowed) {
    const std::filesystem::path other_store = "/mnt/drm/securestorage/data/aaba977f";
    put_file(other_store, "x");
    put_file("/tmp/probe", "");
    if (chown("/tmp/probe", 5001, 100) != 0)
        GTEST_SKIP() << "this sandbox has no other users";
    store_version("1.2.3");
    SecureData::StoreStringData(record_key, "1.2.3");
    GetVersion(); // stores nothing, and still gives the store's files away
    for (const auto& file : {mirror_file, store_file, other_store}) {
        struct stat status {};
        ASSERT_EQ(stat(file.c_str(), &status), 0) << file;
        EXPECT_EQ(status.st_uid, 5001U) << file;
        EXPECT_EQ(status.st_gid, 100U) << file;
    }
}

TEST_F(FirmwareVersionTest, UnwritableStoreAndMirrorFailNothingElse) {
    std::filesystem::remove_all(mirror_file.parent_path());
    std::filesystem::remove_all("/opt/share/securestorage");
    put_file("/opt/share/securestorage", "in the way of the folder");
    put_file(factory_image, image(3, 2, 1));
    EXPECT_EQ(GetVersion(), "3.2.1");
    EXPECT_THAT(log.messages_of("fw_version.cpp: store_version"), ElementsAre("ver[3.2.1] is stored"));
    EXPECT_THAT(log.messages_of("secure_data.cpp: StoreStringData"),
                ElementsAre(testing::StartsWith("[SecureData::StoreStringData], nRet[-")));
    EXPECT_FALSE(content_of(mirror_file));
    std::filesystem::remove("/opt/share/securestorage");
}

TEST_F(FirmwareVersionTest, LastNumberChoosesTheSerialSpeed) {
    const std::string slow = "cpcd_115200.conf";
    const std::string fast = "cpcd_921600.conf";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", slow},
        {"1.2.8", slow},
        {"255.0.8", slow},
        {"1.2.9", fast},
        {"12", fast},
        {"8", slow},
        {"1.2.-3", slow},
        {"1.2.+9", fast},
        {"1.2.9abc", fast},
        {"1.2.\t 10", fast},
        {"9.9.", slow},
        {"1.2.abc", slow},
        {".", slow},
        {"1.2.2147483648", slow},
        {"1.2.2147483647", fast},
        {"1.2.09", fast},
        {"9.9.0x10", slow},
    };
    for (const auto& [version, configuration] : cases)
        EXPECT_EQ(get_cpcd_conf_name(version), configuration) << version;
    EXPECT_THAT(log.messages_of("process_lifecycle.cpp: get_cpcd_conf_name"),
                testing::IsSupersetOf({"FW version[1.2.8], minor[8]", "FW version[1.2.-3], minor[-3]",
                                       "FW version[1.2.abc] has no usable minor number"}));
}

} // namespace
