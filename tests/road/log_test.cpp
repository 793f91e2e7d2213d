#include "support/road.h"

using testing::ElementsAreArray;

namespace {

using Messages = std::vector<std::string>;

const std::string programs = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/";
const std::string relay_link = "/opt/usr/home/owner/share/com.kelsor.tv.brimhub/ttyZigbeeNCP";

Messages together(const std::vector<Messages>& parts) {
    Messages all;
    for (const Messages& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/** A key's own message comes after what the key does: the window has its key handler before the application.
 */
Messages key(const std::string& name, int times = 1) {
    Messages messages(static_cast<std::size_t>(times),
                      "E MainPageView.cpp: keyDownCb > KeyName [" + name + "] Key[" + name + "]");
    return messages;
}

Messages call(const std::string& method) {
    return {"E ncp_requester.cpp: " + method + " > " + method,
            "E dbus_client.cpp: ProcessSyncCall > [b] method = " + method + ", timeout = 120000 msec",
            "E dbus_client.cpp: ProcessSyncCall > [n]", "E ncp_requester.cpp: check_result > Result = 0"};
}

Messages start() {
    return {"I AppMain.cpp: _app_create > app create called",
            "E ncp_requester.cpp: start > start ncp request",
            "E dbus_client.cpp: Init > [b]",
            "E dbus_client.cpp: Init > check init",
            "E dbus_client.cpp: init_dbus > create_dbus_connection",
            "E dbus_client.cpp: init_dbus > create_dbus_proxy",
            "E dbus_client.cpp: init_dbus > subscribe_signal",
            "E dbus_client.cpp: init_dbus > success to init dbus",
            "E dbus_client.cpp: Init > [n]",
            "E dbus_client.cpp: RegisterDBusSignalCB > [b] signal_name = ncp_event",
            "E dbus_client.cpp: RegisterDBusSignalCB > [n]",
            "E ncp_requester.cpp: start > Success to Init Dbus",
            "E TXTestView.cpp: Create > TX Test ContentView Create",
            "E AppMain.cpp: _app_service > _app_service"};
}

Messages kill_stack() {
    Messages messages;
    for (const std::string program : {"zigbeed", "socat", "cpcd"}) {
        messages.push_back("E util.cpp: exec_shell > Command : killall " + program);
        messages.push_back("E util.cpp: get_command_result > Command [pgrep -c " + program + "] result : 0");
    }
    return messages;
}

Messages first_firmware_version() {
    return {"E secure_data.cpp: LoadStringData > [SecureData::LoadStringData], nRet[-N]",
            "E fw_version.cpp: GetVersion > stored ver[]",
            "E fw_version_reader.cpp: GetVersion > fw_ver : 7.4.8",
            "E secure_data.cpp: StoreStringData > [SecureData::StoreStringData], nRet[0]",
            "E fw_version.cpp: store_version > ver[7.4.8] is stored",
            "E fw_version.cpp: GetVersion > FW ver[7.4.8]",
            "E process_lifecycle.cpp: get_cpcd_conf_name > FW version[7.4.8], minor[8]"};
}

Messages run_in_background(const std::string& command) {
    return {"E util.cpp: exec_app > app name : " + programs + command,
            "E util.cpp: exec_app > Success vfork"};
}

Messages bring_up() {
    return together({kill_stack(),
                     {"E process_lifecycle.cpp: prepare_background_app > before child process start",
                      "E util.cpp: wait_condition > /dev/ttyIOT is ok"},
                     first_firmware_version(),
                     run_in_background("cpcd --conf=" + programs + "cpcd_115200.conf"),
                     run_in_background("socat -x -v pty,link=/tmp/ttyZigbeeNCP pty,link=" + relay_link),
                     {"E util.cpp: wait_condition > " + relay_link + " is ok"},
                     run_in_background("zigbeed -r spinel+cpc://cpcd_0?iid=1 -p " + relay_link + " -v"),
                     {"E process_lifecycle.cpp: prepare_background_app > child process started",
                      "E TXTestView.cpp: txTestStartButtonClickedCb > Please Wait..."}});
}

Messages ready() {
    return together({{"E dbus_client.cpp: signal_callback > connection : POINTER, sender_name : SENDER, "
                      "object_path : /org/orvane/qm_ncp_host, interface_name : "
                      "org.orvane.qm_ncp_host.service, signal_name : ncp_event",
                      "E dbus_client.cpp: invoke_callback > Event Data: [ready]",
                      "E MainPageView.cpp: requesterCb > [EVENT DATA] ready"},
                     call("ember_start"),
                     {"E dbus_client.cpp: signal_callback > [n]"}});
}

Messages set_power_to_two() {
    return together({{"I TXTestView.cpp: setPowerButtonPressedCb > power picker popoup created!"},
                     key("Return"),
                     key("Right", 2),
                     {"I TXTestView.cpp: powerSpinnerPressedCb > power value [2]"},
                     call("ember_set_power"),
                     key("Return")});
}

Messages set_channel_to_eleven() {
    return together({key("Down"),
                     {"I TXTestView.cpp: setChannelButtonPressedCb > channel picker popoup created!"},
                     key("Return"),
                     {"I TXTestView.cpp: channelSpinnerPressedCb > channel value [11]"},
                     call("ember_set_channel"),
                     key("Return")});
}

Messages stream_and_stop() {
    return together({key("Down"), call("ember_start_stream"), key("Return"), call("ember_stop_stream"),
                     key("Return"), key("Down"), call("ember_stop"), key("Return")});
}

Messages end() {
    return together(
        {key("Return"),
         {"I platform > the main loop ends: the operator chose to exit",
          "E ncp_requester.cpp: stop > stop ncp requester",
          "E dbus_client.cpp: UnregisterDBusSignalCB > [b] signal_name = ncp_event",
          "E dbus_client.cpp: UnregisterDBusSignalCB > [n]", "E dbus_client.cpp: Deinit > [b]",
          "E dbus_client.cpp: Deinit > [n]", "E ncp_requester.cpp: stop > Success to Deinit Dbus"},
         kill_stack()});
}

} // namespace

class LogRoad : public Road {};

TEST_F(LogRoad, TellsAWholeTransmitTestFromStartToEnd) {
    open_tx_test();
    open_picker(power_picker, 0, 2);
    choose(power_picker, 2);
    go("Down", "Set Channel");
    open_picker(channel_picker, 11, 11);
    choose(channel_picker, 11);
    go("Down", "Start Stream");
    enter("Stop Stream");
    enter("Start Stream");
    go("Down", "Stop Test");
    enter("Start TX Test");
    Messages way_to_exit;
    for (const std::string& pressed : go_to_header("Exit"))
        way_to_exit.push_back(key(pressed).front());
    enter("Cancel");
    go("Left", "Yes");
    operator_.press("Return");
    expect_orderly_end();
    const Messages expected = together({start(), key("Return"), bring_up(), key("Return"), ready(),
                                        set_power_to_two(), set_channel_to_eleven(), stream_and_stop(),
                                        way_to_exit, key("Return"), key("Left"), end()});
    EXPECT_THAT(log_.messages(), ElementsAreArray(expected));
}
