#include "failure.h"

#include <unistd.h>

namespace {

using Messages = std::vector<std::string>;
using Files = std::map<std::string, FileState>;

const std::string share_folder = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub";
const std::string relay_link = share_folder + "/ttyZigbeeNCP";
const std::string version_file = share_folder + "/fw_version";
const std::string programs = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/";
const std::string store_folder = "/opt/share/securestorage/data";
const std::string store_file = store_folder + "/aaba977f";
const std::string slow = "app name : " + programs + "cpcd --conf=" + programs + "cpcd_115200.conf";
const std::string fast = "app name : " + programs + "cpcd --conf=" + programs + "cpcd_921600.conf";
const std::string give_up = "Failed to start child process";
const Messages whole_stack = {"cpcd", "socat", "zigbeed"};

Messages kill_commands() {
    return {"Command : killall zigbeed", "Command : killall socat", "Command : killall cpcd"};
}

Messages join(Messages first, const Messages& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The missing device, whatever becomes of the report's files.
Failure without_device(const std::string& name, const Messages& options, const Files& files) {
    const Messages report = {"wait_condition > Wait Timeout. Fail to connect /dev/ttyIOT",
                             "write_file > path[" + result_file + "], data[Fail to connect /dev/ttyIOT]",
                             "write_file > path[" + test_file + "], data[FAIL]",
                             "write_file > path[" + factory_file + "], data[FAIL]",
                             "exec_shell > Command : chsmack -a User::App::Shared " + factory_file,
                             "req_terminate_main_loop > Recieved request to terminate"};
    const Messages end = join({"platform > the main loop ends: the application asked to",
                               "stop > stop ncp requester", "stop > Success to Deinit Dbus"},
                              kill_commands());
    Failure failure{.name = name,
                    .television = join({"--no-serial"}, options),
                    .outcome = Outcome::end,
                    .messages = join(join(join(kill_commands(), report), kill_commands()), end),
                    .counts = {{"waiting /dev/ttyIOT", 30},
                               {"app name", 0},
                               {give_up, 0},
                               {"chown fail!!!", geteuid() == 0 ? 0 : 1}},
                    .files = files};
    failure.files.insert({{result_file, {.content = "Fail to connect /dev/ttyIOT"}},
                          {test_file, {.content = "FAIL"}},
                          {factory_file, {.content = "FAIL"}}});
    return failure;
}

std::vector<Failure> of_the_device() {
    Failure read_only = without_device("FactoryDataNotWritable", {"--read-only-file", factory_file},
                                       {{factory_file, {.content = "", .mode = 0600}}});
    read_only.counts["chown fail!!!"] = 1;
    Failure nothing = without_device("NoReportFileWritable",
                                     {"--read-only-file", test_file, "--read-only-file", factory_file,
                                      "--folder", result_folder + "=read-only"},
                                     {{result_file, {}},
                                      {test_file, {.content = "", .mode = 0600}},
                                      {factory_file, {.content = "", .mode = 0600}}});
    nothing.counts = read_only.counts;
    return {
        without_device("SerialDeviceMissing", {}, {}),
        read_only,
        nothing,
        without_device(
            "ReportIsGivenAwayAndLabelled", {"--labels"},
            {{factory_file, {.content = "FAIL", .is_given_away = true, .label = "User::App::Shared"}}}),
        without_device("LabelToolMissing", {"--program", "chsmack=missing"},
                       {{factory_file, {.content = "FAIL", .label = ""}}}),
        without_device("ResultFolderMissing", {"--folder", result_folder + "=missing"}, {{result_file, {}}}),
        without_device("ResultFolderFull", {"--folder", result_folder + "=full"},
                       {{result_file, {.content = ""}}}),
        Failure{.name = "SerialDeviceLate",
                .television = {"--no-serial"},
                .running = whole_stack,
                .messages = {"wait_condition > /dev/ttyIOT is ok",
                             "prepare_background_app > child process started"},
                .counts = {{"Wait Timeout", 0}},
                .device_after_waits = 15}};
}

// No relay link: nothing is reported, and the start can be tried again.
Failure without_link(const std::string& name, const Messages& options, const Messages& running) {
    return {.name = name,
            .television = options,
            .outcome = Outcome::start_failed,
            .running = running,
            .messages = {"exec_app > app name : " + programs +
                             "socat -x -v pty,link=/tmp/ttyZigbeeNCP pty,link=" + relay_link,
                         "wait_condition > Wait Timeout. Fail to connect " + relay_link, "> " + give_up},
            .counts = {{"waiting " + relay_link, 60}, {programs + "zigbeed", 0}, {"Success vfork", 4}},
            .again = Outcome::start_failed};
}

// The link appears, and what is missing behind it is not noticed.
Failure without_program(const std::string& name, const Messages& options, const Messages& running) {
    return {.name = name,
            .television = options,
            .outcome = Outcome::waiting,
            .running = running,
            .messages = {"wait_condition > " + relay_link + " is ok", "child process started",
                         "> Please Wait..."},
            .counts = {{"Success vfork", 3}, {give_up, 0}}};
}

std::vector<Failure> of_the_stack() {
    Failure read_only =
        without_link("RelayFolderReadOnly", {"--folder", share_folder + "=read-only"}, {"cpcd"});
    read_only.messages.insert(read_only.messages.begin(), "store_version > ver[7.4.8] is stored");
    read_only.files = {{version_file, {}}};
    Failure other_speed =
        without_program("ModuleSpeaksAnotherSpeed", {"--module-speed", "921600"}, whole_stack);
    other_speed.is_rx_test = true;
    Failure ends = without_link("RelayProgramEnds", {"--program", "socat=ends"}, {"cpcd"});
    ends.is_rx_test = true;
    return {without_link("RelayProgramMissing", {"--program", "socat=missing"}, {"cpcd"}),
            ends,
            without_link("RelayFolderMissing", {"--folder", share_folder + "=missing"}, {"cpcd"}),
            read_only,
            without_program("DaemonMissing", {"--program", "cpcd=missing"}, {"socat", "zigbeed"}),
            without_program("DaemonEnds", {"--program", "cpcd=ends"}, {"socat", "zigbeed"}),
            without_program("HostDaemonMissing", {"--program", "zigbeed=missing"}, {"cpcd", "socat"}),
            without_program("HostDaemonEnds", {"--program", "zigbeed=ends"}, {"cpcd", "socat"}),
            other_speed};
}

Failure restart(const std::string& name, const Messages& options) {
    const Messages start = {"before child process start", "child process started"};
    return {.name = name,
            .television = options,
            .running = whole_stack,
            .messages =
                join(join(join(kill_commands(), start), join(kill_commands(), start)), kill_commands()),
            .again = Outcome::test_page};
}

// What does not end costs its five tries at the start and five at the end, and nothing else does.
std::vector<Failure> of_the_stops() {
    Failure old{.name = "OldProgramsIgnoreTermination", .messages = {"child process started"}};
    for (const std::string& name : whole_stack) {
        old.television.insert(old.television.end(), {"--program", name + "=old"});
        old.running.insert(old.running.end(), 2, name);
        old.survivors.push_back(name);
        old.counts["Command [pgrep -c " + name + "]"] = 10;
    }
    return {restart("RestartOverARunningStack", {}),
            restart("RestartOverOwnChildren", {"--shell", "/bin/bash"}),
            old,
            {.name = "StartedProgramIgnoresTermination",
             .television = {"--program", "cpcd=ignores-sigterm"},
             .running = whole_stack,
             .messages = kill_commands(),
             .counts = {{"Command [pgrep -c cpcd] result : 0", 1}, {"Command [pgrep -c cpcd] result : 1", 5}},
             .survivors = {"cpcd"}}};
}

// A second start with a version stored by the first, and a hub image that is not read into memory as a whole.
std::vector<Failure> of_the_images() {
    return {{.name = "HubImageHuge",
             .television = {"--firmware", "7.4.9", "--hub-metadata", "--image", "hub=67108864:1.2.12"},
             .running = whole_stack,
             .messages = {"stored ver[]", "fw_ver : 7.4.9", "FW ver[7.4.9]", fast, "stored ver[7.4.9]",
                          "fw_ver : 1.2.12", "ver[1.2.12] is stored", "FW ver[1.2.12]", fast},
             .counts = {{"can't opent file", 0}, {"StoreStringData], nRet[0]", 2}},
             .files = {{version_file, {.content = "1.2.12"}},
                       {store_file, {.content = any_content, .mode = 0600}}},
             .again = Outcome::test_page}};
}

// The start goes on; without a store the factory's image decides each time.
Failure without_store(const std::string& name, const Messages& options) {
    return {.name = name,
            .television = options,
            .running = whole_stack,
            .messages = {"stored ver[]", "FW ver[7.4.8]", slow, "stored ver[]", "fw_ver : 7.4.8",
                         "StoreStringData], nRet[-N]", "ver[7.4.8] is stored", "FW ver[7.4.8]", slow},
            .counts = {{"StoreStringData], nRet[-", 2}},
            .files = {{version_file, {.content = "7.4.8"}}, {store_file, {}}, {store_file + ".new", {}}},
            .again = Outcome::test_page};
}

std::vector<Failure> of_the_store() {
    Failure missing{
        .name = "SecureStoreFolderMissing",
        .television = {"--folder", "/opt/share/securestorage=missing"},
        .running = whole_stack,
        .messages = {"StoreStringData], nRet[0]", "stored ver[7.4.8]", "FW ver[7.4.8]"},
        .counts = {{"fw_ver : ", 1}},
        .files = {{store_file, {.content = any_content, .mode = 0600}}, {version_file, {.content = "7.4.8"}}},
        .again = Outcome::test_page};
    Failure given_away = missing;
    given_away.name = "StoreAndVersionFileAreGivenAway";
    given_away.television = {};
    for (auto& [path, state] : given_away.files)
        state.is_given_away = true;
    return {without_store("SecureStoreReadOnly", {"--folder", store_folder + "=read-only"}),
            without_store("SecureStoreFull", {"--folder", store_folder + "=full"}),
            without_store("MachineIdentityMissing", {"--no-machine-id"}), missing, given_away};
}

} // namespace

std::vector<Failure> failures() {
    std::vector<Failure> all;
    for (const auto& group :
         {of_the_device(), of_the_stack(), of_the_stops(), of_the_images(), of_the_store()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}
