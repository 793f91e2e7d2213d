#include "model/process_lifecycle.h"

#include "Log.h"
#include "model/fw_version.h"
#include "model/util.h"

#include <exception>
#include <platform/application.h>

namespace {

constexpr const char* slow_configuration = "cpcd_115200.conf";
constexpr const char* fast_configuration = "cpcd_921600.conf";
constexpr int first_fast_minor = 9;

const std::string serial_device = "/dev/ttyIOT";
const std::string relay_link = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/ttyZigbeeNCP";
const std::string program_folder = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/";

} // namespace

std::string get_cpcd_conf_name(const std::string& version) {
    if (version.empty())
        return slow_configuration;
    // Without a dot, npos + 1 is 0, which selects the entire text.
    const std::string last_number = version.substr(version.rfind('.') + 1);
    try {
        const int minor = std::stoi(last_number);
        LOG_ERROR("FW version[%s], minor[%d]", version.c_str(), minor);
        return minor < first_fast_minor ? slow_configuration : fast_configuration;
    } catch (const std::exception&) {
        LOG_ERROR("FW version[%s] has no usable minor number", version.c_str());
        return slow_configuration;
    }
}

void req_terminate_main_loop() {
    LOG_ERROR("Recieved request to terminate");
    kill_background_app();
    ui_app_quit();
}

int prepare_background_app() {
    LOG_ERROR("before child process start");
    wait_condition(serial_device, true);

    const std::string configuration = get_cpcd_conf_name(GetVersion());
    const std::string cpcd = program_folder + "cpcd --conf=" + program_folder + configuration;
    const std::string socat =
        program_folder + "socat -x -v pty,link=/tmp/ttyZigbeeNCP pty,link=" + relay_link;
    const std::string zigbeed =
        program_folder + "zigbeed -r spinel+cpc://cpcd_0?iid=1 -p " + relay_link + " -v";

    exec_app(cpcd.c_str());
    exec_app(socat.c_str());
    const int relay_is_up = wait_condition(relay_link, false);
    if (relay_is_up == 1) {
        exec_app(zigbeed.c_str());
        LOG_ERROR("child process started");
    }
    return relay_is_up;
}
