/** The application's interface to the NCP host service: radio test commands and events. */
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
 * Each command is one D-Bus call that blocks the calling (main) thread for up to 120000 ms. A command returns true if
 * the service replies with result code 0, and false (logged) on a different code, a reply of the wrong type, an error
 * or a time-out, and if the requester is not started. Commands are not retried.
 */
class ncp_requester : public CSingleton<ncp_requester> {
public:
    ~ncp_requester() override = default;

    /** Adds a listener for the text of every event; a listener that is already registered keeps its user data. */
    void register_callback(DBusSignalCB handler, void* user_data);
    /** Removes a listener, if registered. */
    void unregister_callback(DBusSignalCB handler);

    /** Connects to the bus and listens for events; logs failures. Makes up to 20 attempts, 500 ms apart; the twentieth
     * counts as failed even if it connects. */
    void start();
    /** Stops listening and disconnects from the bus; keeps the listeners. */
    void stop();

    /** Starts the radio in a test mode: 0 for TX, 1 for RX. */
    bool ember_start(int test_mode);
    /** Stops the test. */
    bool ember_stop();
    /** Sets the radio channel, 11 to 26; the service checks the range. */
    bool ember_set_channel(int channel);
    /** Sets the transmit power, 0 to 20; the service checks the range. */
    bool ember_set_power(int power);
    /** Starts the continuous test stream. */
    bool ember_start_stream();
    /** Stops the test stream. */
    bool ember_stop_stream();
    /**
     * Gets the reception statistics.
     *
     * @param statistics receives the service's text, even if its result code is not 0; its first word is the number
     *                   of received packets.
     */
    bool ember_get_rx_statistics(std::string& statistics);
    /** Resets the reception statistics. */
    bool ember_reset_rx_statistics();

    /** Logs a result code of the service; returns true if it is 0, success. */
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
