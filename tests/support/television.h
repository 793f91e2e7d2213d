/** The television that a test runs in. */
#pragma once

#include "client/client.h"

#include <string>
#include <vector>

namespace simulator {

/** Connects to the system bus, with the connection that GIO shares. @throws std::runtime_error. */
BusConnection connect_to_system_bus();

/** @throws std::runtime_error. */
Client this_television();

/** Every call of the NCP host's methods since it started, "ember_set_channel(11)". @throws Failure. */
std::vector<std::string> asked_of_host(const Client& client);

/** From now on the NCP host answers a method like that, see `parse_behaviour`. @throws Failure, UsageError. */
void let_host_answer(const Client& client, const std::string& method, const std::string& behaviour);

/** Sends "ncp_event" some times with these values, written as GVariant text: "(7, true)". There need be no host. */
void send_event(const Client& client, const std::string& values, int times = 1);

struct RadioState {
    std::string mode; /**< "off", "tx" or "rx" */
    bool streams = false;
};
/** What the radio module does. @throws Failure. */
RadioState radio_state(const Client& client);

/** Leaves a PNG picture of the whole screen. @throws Failure when the screen cannot be read or the file not be written. */
void take_picture(const std::string& path);

/** Announces to the session that a screen reader is there, or has gone. @throws std::runtime_error. */
void announce_screen_reader(bool is_there);

} // namespace simulator
