#include "model/fw_version.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "support/log_capture.h"
#include "support/secure_store.h"

#include <gmock/gmock.h>

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

/** What is there when the version is asked for, and what comes of it; no image is a null text. */
struct Decision {
    const char* stored; /**< "damaged": a store that cannot be read; null: none */
    bool has_metadata;
    std::optional<std::string> hub;
    std::optional<std::string> factory;
    const char* version;
    bool is_stored; /**< it differs from what was stored */
};

class VersionDecision : public FirmwareVersionTest, public testing::WithParamInterface<Decision> {};

TEST_P(VersionDecision, IsMadeAndRememberedWhenItChanges) {
    const auto& [stored, has_metadata, hub, factory, version, is_stored] = GetParam();
    const bool is_damaged = stored != nullptr && stored == std::string("damaged");
    if (stored != nullptr)
        SecureData::StoreStringData(record_key, stored);
    if (is_damaged)
        std::filesystem::resize_file(store_file, std::filesystem::file_size(store_file) - 1);
    if (has_metadata)
        put_file(metadata_file, "not read");
    if (hub)
        put_file(hub_image, *hub);
    if (factory)
        put_file(factory_image, *factory);
    put_file(mirror_file, "old");
    log.clear();
    EXPECT_EQ(GetVersion(), version);
    EXPECT_EQ(content_of(mirror_file), is_stored ? version : "old");
    EXPECT_EQ(log.messages_of("secure_data.cpp: StoreStringData").size(), is_stored ? 1 : 0);
    const std::string known = stored == nullptr || is_damaged ? "" : stored;
    EXPECT_THAT(log.messages_of("fw_version.cpp: GetVersion"),
                ElementsAre("stored ver[" + known + "]", "FW ver[" + std::string(version) + "]"));
    EXPECT_EQ(SecureData::LoadStringData(record_key), version);
}

const std::string hub_says = image(7, 4, 10);
const std::string factory_says = image(7, 4, 8);
const std::string too_short = "7 bytes";
INSTANTIATE_TEST_SUITE_P(All, VersionDecision,
                         testing::Values(Decision{nullptr, false, hub_says, factory_says, "7.4.8", true},
                                         Decision{nullptr, true, hub_says, factory_says, "7.4.8", true},
                                         Decision{nullptr, true, hub_says, {}, "", false},
                                         Decision{nullptr, false, {}, too_short, "", false},
                                         Decision{"damaged", false, hub_says, factory_says, "7.4.8", true},
                                         Decision{"damaged", true, hub_says, factory_says, "7.4.8", true},
                                         Decision{"1.2.9", false, hub_says, factory_says, "1.2.9", false},
                                         Decision{"1.2.9", true, hub_says, factory_says, "7.4.10", true},
                                         Decision{"7.4.10", true, hub_says, factory_says, "7.4.10", false},
                                         Decision{"1.2.9", true, too_short, factory_says, "", true},
                                         Decision{"1.2.9", true, {}, factory_says, "", true}));

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
