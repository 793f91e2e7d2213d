#include "model/fw_version.h"

#include "Log.h"
#include "model/file.h"
#include "model/fw_version_reader.h"
#include "model/secure_data.h"

#include <unistd.h>

namespace {

constexpr const char* record_key = "IOT_MODULE_FW_VER";
constexpr const char* mirror_file = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/fw_version";
constexpr const char* factory_image = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/xqZigbeeRcp-mfg";
constexpr const char* hub_image =
    "/opt/usr/apps/com.kelsor.orvane.plovett-hub/res/hub/config/hub-core/zigbee/xqZigbeeRcp";
constexpr const char* hub_metadata_file =
    "/opt/usr/home/owner/apps_rw/com.kelsor.orvane.plovett-hub/data/hub/"
    "firmwareInfo/radioFirmwareMetadata.json";

std::string resolve(const std::string& stored) {
    if (stored.empty())
        return FwVersionReader().GetVersion(factory_image);
    if (access(hub_metadata_file, F_OK) == 0)
        return FwVersionReader().GetVersion(hub_image);
    return stored;
}

} // namespace

std::string GetVersion() {
    const std::string stored = SecureData::LoadStringData(record_key);
    LOG_ERROR("stored ver[%s]", stored.c_str());

    std::string version = resolve(stored);
    if (version != stored) {
        SecureData::StoreStringData(record_key, version);
        store_version(version);
    }
    LOG_ERROR("FW ver[%s]", version.c_str());

    // Each device has one of these files, once a version is stored.
    give_to_device_owner("/opt/share/securestorage/data/aaba977f");
    give_to_device_owner("/mnt/drm/securestorage/data/aaba977f");
    return version;
}

void store_version(const std::string& version) {
    replace_content(mirror_file, version);
    give_to_device_owner(mirror_file);
    LOG_ERROR("ver[%s] is stored", version.c_str());
}
