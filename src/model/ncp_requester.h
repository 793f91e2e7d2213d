/** The application's whole view of the NCP host service: its radio test commands and its events. */
#pragma once

#include "CSingleton.h"
#include "Log.h"
#include "model/dbus_client.h"

#include <gio/gio.h>
#include <map>
#include <optional>
#include <string>

/**
 * Sends the radio test commands and relays the service's signal "ncp_event" to the listeners.
 *
 * Each command is one D-Bus call that blocks the calling (main) thread for at most 120000 ms. It answers true
 * when the service replied with result code 0, and false (logged) when it replied with another code, with a
 * value of another type or with an error, or did not reply, and when the requester is not started. Nothing is
 * retried.
 */
class ncp_requester : public CSingleton<ncp_requester> {
public:
    ~ncp_requester() override = default;

    /** Adds a listener, called with the text of every event; one that is there keeps its user data. */
    void register_callback(DBusSignalCB handler, void* user_data);
    /** Removes a listener, if it is there. */
    void unregister_callback(DBusSignalCB handler);

    /** Connects to the bus, in at most 20 attempts 500 ms apart, and listens for events; logs failures. */
    void start();
    /** Stops listening and leaves the bus; the listeners stay. */
    void stop();

    /** Starts the radio in a test mode: 0 TX test, 1 RX test. */
    bool ember_start(int test_mode);
    /** Ends the test. */
    bool ember_stop();
    /** Sets the radio channel; Zigbee's are 11 to 26, and the service judges. */
    bool ember_set_channel(int channel);
    /** Sets the transmit power, 0 to 20; the service judges. */
    bool ember_set_power(int power);
    /** Starts the continuous test stream. */
    bool ember_start_stream();
    /** Stops the test stream. */
    bool ember_stop_stream();
    /**
     * Asks for the reception statistics.
     *
     * @param statistics replaced by the service's text, also when its result code is not 0; its first word is
     *                   the number of received packets.
     */
    bool ember_get_rx_statistics(std::string& statistics);
    /** Sets the reception statistics back to zero. */
    bool ember_reset_rx_statistics();

    /** Judges a result code of the service: 0 is success. */
    static bool check_result(int result);

private:
    friend class CSingleton<ncp_requester>;
    ncp_requester() = default;

    static void ncp_event_callback(const std::string& event_text, void* requester);

    bool call(const LogOrigin& operation, const char* method, GVariant* parameters, const char* reply_type,
              GVariant*& reply);
    bool command(const char* method, std::optional<int> argument, const char* operation);

    std::map<DBusSignalCB, void*> listeners;
    DBusClient client;
};
