#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "model/util.h"
#include "support/log_capture.h"
#include "support/sleep_recorder.h"
#include "support/surroundings.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>

using testing::ElementsAre;

namespace {

const std::filesystem::path serial_device = "/dev/ttyIOT";
const std::filesystem::path kept_device = "/dev/ttyIOT.kept";
const std::filesystem::path programs = "/opt/usr/apps/com.kelsor.tv.brimhub/bin";
const std::filesystem::path relay_link = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/ttyZigbeeNCP";
const std::filesystem::path report_file = "/opt/data/BM/EW/result/iot_test_bin_result";

// Stand-ins of the three programs, which note their command line and live until they are killed.
class RadioStackTest : public testing::Test {
protected:
    RadioStackTest() {
        if (std::filesystem::exists(std::filesystem::symlink_status(serial_device)))
            std::filesystem::rename(serial_device, kept_device);
        for (const auto& folder : {relay_link.parent_path(), report_file.parent_path(), notes})
            std::filesystem::create_directories(folder);
        std::filesystem::remove_all("/opt/share/securestorage/data/aaba977f");
        std::filesystem::create_directories("/opt/share/securestorage/data");
        std::filesystem::remove(relay_link);
        std::filesystem::remove(report_file);
        for (const char* const name : {"cpcd", "socat", "zigbeed"})
            put_stand_in(name, "");
        SecureData::StoreStringData("IOT_MODULE_FW_VER", "1.2.9");
        std::filesystem::remove(
            "/opt/usr/home/owner/apps_rw/com.kelsor.orvane.plovett-hub/data/hub/firmwareInfo/"
            "radioFirmwareMetadata.json");
    }

    ~RadioStackTest() override {
        kill_background_app();
        while (wait(nullptr) > 0) { // no child is left to the next test
        }
        std::filesystem::remove(serial_device);
        if (std::filesystem::exists(std::filesystem::symlink_status(kept_device)))
            std::filesystem::rename(kept_device, serial_device);
        std::filesystem::remove_all(notes);
    }

    void put_stand_in(const std::string& name, const std::string& before_it_waits) {
        // Opening a pipe that nobody writes waits without a child process.
        exec_shell("test -p /tmp/velmora-hold || mkfifo /tmp/velmora-hold");
        put_script(programs / name, before_it_waits + "\necho $$ $0 \"$@\" > " + (notes / name).string() +
                                        "\nread -r forever < /tmp/velmora-hold");
    }

    // The program's command line once it runs, without its process id; empty when it was not started.
    std::string command_line_of(const std::string& name) {
        for (int attempt = 0; attempt < 400; ++attempt) {
            const std::string noted = content_of(notes / name).value_or("");
            if (noted.ends_with('\n'))
                return noted.substr(noted.find(' ') + 1, noted.size() - noted.find(' ') - 2);
            usleep(5'000);
        }
        return "";
    }

    static bool runs(const std::string& name) {
        return exec_shell(("pgrep -x " + name + " >/dev/null").c_str()) == 0;
    }

    const std::filesystem::path notes = "/tmp/velmora-started";
    LogCapture log;
    SleepRecorder sleep;
};

TEST_F(RadioStackTest, StartsInOrderWithTheConfigurationOfTheFirmwareAndStartsAgain) {
    put_file(serial_device, "");
    put_stand_in("socat", "ln -sf /dev/null " + relay_link.string());
    for (const auto& [version, configuration] :
         {std::pair{"1.2.9", "cpcd_921600.conf"}, std::pair{"1.2.8", "cpcd_115200.conf"}}) {
        SecureData::StoreStringData("IOT_MODULE_FW_VER", version);
        std::filesystem::remove(relay_link);
        log.clear();
        kill_background_app();
        ASSERT_EQ(prepare_background_app(), 1);
        const std::string bin = programs.string() + "/";
        const std::string cpcd = bin + "cpcd --conf=" + (programs / configuration).string();
        const std::string socat =
            bin + "socat -x -v pty,link=/tmp/ttyZigbeeNCP pty,link=" + relay_link.string();
        const std::string zigbeed =
            bin + "zigbeed -r spinel+cpc://cpcd_0?iid=1 -p " + relay_link.string() + " -v";
        EXPECT_EQ(command_line_of("cpcd"), cpcd);
        EXPECT_EQ(command_line_of("socat"), socat);
        EXPECT_EQ(command_line_of("zigbeed"), zigbeed);
        EXPECT_THAT(log.messages_of("util.cpp: exec_app"),
                    ElementsAre("app name : " + cpcd, "Success vfork", "app name : " + socat, "Success vfork",
                                "app name : " + zigbeed, "Success vfork"));
        EXPECT_THAT(log.messages_of("process_lifecycle.cpp: prepare_background_app"),
                    ElementsAre("before child process start", "child process started"));
        std::filesystem::remove_all(notes);
        std::filesystem::create_directories(notes);
    }
    EXPECT_FALSE(content_of(report_file));
}

TEST_F(RadioStackTest, StopsTheProgramsInReverseOrder) {
    put_file(serial_device, "");
    put_stand_in("socat", "ln -sf /dev/null " + relay_link.string());
    ASSERT_EQ(prepare_background_app(), 1);
    for (const char* const name : {"cpcd", "socat", "zigbeed"})
        ASSERT_NE(command_line_of(name), "");
    log.clear();
    kill_background_app();
    EXPECT_THAT(
        log.messages_of("util.cpp: exec_shell"),
        ElementsAre("Command : killall zigbeed", "Command : killall socat", "Command : killall cpcd"));
    for (const char* const name : {"cpcd", "socat", "zigbeed"})
        EXPECT_FALSE(runs(name)) << name;
}

TEST_F(RadioStackTest, MissingSerialDeviceIsAnError) {
    EXPECT_THAT([] { prepare_background_app(); },
                testing::ThrowsMessage<MissingDeviceError>("wait condition error"));
    EXPECT_EQ(log.messages_of("util.cpp: exec_app").size(), 0);
}

} // namespace
