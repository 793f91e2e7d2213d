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
const Messages kill_commands = {"Command : killall zigbeed", "Command : killall socat",
                                "Command : killall cpcd"};
const FileState untouched{.content = "", .mode = 0600};
const FileState sealed{.content = any_content, .mode = 0600};

Messages join(std::initializer_list<Messages> parts) {
    Messages all;
    for (const Messages& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/** A failure that differs from another in these. */
Failure with(Failure failure, const std::string& name, const std::string& options = "",
             const std::string& running = "", const Files& files = {}) {
    failure.name = name;
    failure.television += " " + options;
    if (!running.empty())
        failure.running = running;
    for (const auto& [path, state] : files)
        failure.files[path] = state;
    return failure;
}

std::vector<Failure> of_the_device() {
    const Failure missing{
        .television = "--no-serial",
        .outcome = Outcome::end,
        .messages = join({kill_commands,
                          {"wait_condition > Wait Timeout. Fail to connect /dev/ttyIOT",
                           "write_file > path[" + result_file + "], data[Fail to connect /dev/ttyIOT]",
                           "write_file > path[" + test_file + "], data[FAIL]",
                           "write_file > path[" + factory_file + "], data[FAIL]",
                           "exec_shell > Command : chsmack -a User::App::Shared " + factory_file,
                           "req_terminate_main_loop > Recieved request to terminate"},
                          kill_commands,
                          {"platform > the main loop ends: the application asked to",
                           "stop > stop ncp requester", "stop > Success to Deinit Dbus"},
                          kill_commands}),
        .counts = {{"waiting /dev/ttyIOT", 30},
                   {"app name", 0},
                   {give_up, 0},
                   {"chown fail!!!", geteuid() == 0 ? 0 : 1}},
        .files = {{result_file, {.content = "Fail to connect /dev/ttyIOT"}},
                  {test_file, {.content = "FAIL"}},
                  {factory_file, {.content = "FAIL"}}}};
    Failure read_only = with(missing, "FactoryDataNotWritable", "--read-only-file " + factory_file, "",
                             {{factory_file, untouched}});
    read_only.counts["chown fail!!!"] = 1;
    return {
        with(missing, "SerialDeviceMissing"),
        read_only,
        with(read_only, "NoReportFileWritable",
             "--read-only-file " + test_file + " --folder " + result_folder + "=read-only", "",
             {{result_file, {}}, {test_file, untouched}}),
        with(missing, "ReportIsGivenAwayAndLabelled", "--labels", "",
             {{factory_file, {.content = "FAIL", .is_given_away = true, .label = "User::App::Shared"}}}),
        with(missing, "LabelToolMissing", "--program chsmack=missing", "",
             {{factory_file, {.content = "FAIL", .label = ""}}}),
        with(missing, "ResultFolderMissing", "--folder " + result_folder + "=missing", "",
             {{result_file, {}}}),
        with(missing, "ResultFolderFull", "--folder " + result_folder + "=full", "",
             {{result_file, {.content = ""}}}),
        {.name = "SerialDeviceLate",
         .television = "--no-serial",
         .messages = {"wait_condition > /dev/ttyIOT is ok", "prepare_background_app > child process started"},
         .counts = {{"Wait Timeout", 0}},
         .device_after_waits = 15}};
}

std::vector<Failure> of_the_stack() {
    // Nothing is reported, and the start can be tried again.
    const Failure no_link{
        .outcome = Outcome::start_failed,
        .running = "cpcd",
        .messages = {"exec_app > app name : " + programs +
                         "socat -x -v pty,link=/tmp/ttyZigbeeNCP pty,link=" + relay_link,
                     "wait_condition > Wait Timeout. Fail to connect " + relay_link, "> " + give_up},
        .counts = {{"waiting " + relay_link, 60}, {programs + "zigbeed", 0}, {"Success vfork", 4}},
        .starts_again = true};
    Failure read_only = with(no_link, "RelayFolderReadOnly", "--folder " + share_folder + "=read-only", "",
                             {{version_file, {}}});
    read_only.messages.insert(read_only.messages.begin(), "store_version > ver[7.4.8] is stored");
    // The link appears, and what is missing behind it is not noticed.
    const Failure no_answer{.outcome = Outcome::waiting,
                            .messages = {"wait_condition > " + relay_link + " is ok", "child process started",
                                         "> Please Wait..."},
                            .counts = {{"Success vfork", 3}, {give_up, 0}}};
    Failure other_speed = with(no_answer, "ModuleSpeaksAnotherSpeed", "--module-speed 921600");
    Failure ends = with(no_link, "RelayProgramEnds", "--program socat=ends");
    other_speed.is_rx_test = ends.is_rx_test = true;
    return {with(no_link, "RelayProgramMissing", "--program socat=missing"),
            ends,
            with(no_link, "RelayFolderMissing", "--folder " + share_folder + "=missing"),
            read_only,
            with(no_answer, "DaemonMissing", "--program cpcd=missing", "socat zigbeed"),
            with(no_answer, "DaemonEnds", "--program cpcd=ends", "socat zigbeed"),
            with(no_answer, "HostDaemonMissing", "--program zigbeed=missing", "cpcd socat"),
            with(no_answer, "HostDaemonEnds", "--program zigbeed=ends", "cpcd socat"),
            other_speed};
}

// What does not end costs its five tries at the start and five at the end, and nothing else does.
std::vector<Failure> of_the_stops() {
    const Messages start = {"before child process start", "child process started"};
    const Failure restart{.messages = join({kill_commands, start, kill_commands, start, kill_commands}),
                          .starts_again = true};
    return {with(restart, "RestartOverARunningStack"),
            with(restart, "RestartOverOwnChildren", "--shell /bin/bash"),
            {.name = "OldProgramsIgnoreTermination",
             .television = "--program cpcd=old --program socat=old --program zigbeed=old",
             .running = "cpcd cpcd socat socat zigbeed zigbeed",
             .messages = {"child process started"},
             .counts = {{"Command [pgrep -c cpcd]", 10},
                        {"Command [pgrep -c socat]", 10},
                        {"Command [pgrep -c zigbeed]", 10}},
             .survivors = "cpcd socat zigbeed"},
            {.name = "StartedProgramIgnoresTermination",
             .television = "--program cpcd=ignores-sigterm",
             .messages = kill_commands,
             .counts = {{"Command [pgrep -c cpcd] result : 0", 1}, {"Command [pgrep -c cpcd] result : 1", 5}},
             .survivors = "cpcd"}};
}

std::vector<Failure> of_the_version() {
    // The start goes on; without a store the factory's image decides each time.
    const Failure no_store{
        .messages = {"stored ver[]", "FW ver[7.4.8]", slow, "stored ver[]", "fw_ver : 7.4.8",
                     "StoreStringData], nRet[-N]", "ver[7.4.8] is stored", "FW ver[7.4.8]", slow},
        .counts = {{"StoreStringData], nRet[-", 2}},
        .files = {{version_file, {.content = "7.4.8"}}, {store_file, {}}, {store_file + ".new", {}}},
        .starts_again = true};
    const Failure stored{.messages = {"StoreStringData], nRet[0]", "stored ver[7.4.8]", "FW ver[7.4.8]"},
                         .counts = {{"fw_ver : ", 1}},
                         .files = {{store_file, sealed}, {version_file, {.content = "7.4.8"}}},
                         .starts_again = true};
    Failure given_away = with(stored, "StoreAndVersionFileAreGivenAway");
    for (auto& [path, state] : given_away.files)
        state.is_given_away = true;
    return {
        with(no_store, "SecureStoreReadOnly", "--folder " + store_folder + "=read-only"),
        with(no_store, "SecureStoreFull", "--folder " + store_folder + "=full"),
        with(no_store, "MachineIdentityMissing", "--no-machine-id"),
        with(stored, "SecureStoreFolderMissing", "--folder /opt/share/securestorage=missing"),
        given_away,
        // A second start with a version stored by the first, and an image that is not read into memory as a whole.
        {.name = "HubImageHuge",
         .television = "--firmware 7.4.9 --hub-metadata --image hub=67108864:1.2.12",
         .messages = {"stored ver[]", "fw_ver : 7.4.9", "FW ver[7.4.9]", fast, "stored ver[7.4.9]",
                      "fw_ver : 1.2.12", "ver[1.2.12] is stored", "FW ver[1.2.12]", fast},
         .counts = {{"can't opent file", 0}, {"StoreStringData], nRet[0]", 2}},
         .files = {{version_file, {.content = "1.2.12"}}, {store_file, sealed}},
         .starts_again = true}};
}

} // namespace

std::vector<Failure> failures() {
    std::vector<Failure> all;
    for (const auto& group : {of_the_device(), of_the_stack(), of_the_stops(), of_the_version()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}
