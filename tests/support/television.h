/** The television in which a test runs. */
#pragma once

#include "client/client.h"

#include <string>
#include <vector>

namespace simulator {

/** Returns GIO's shared connection to the system bus. @throws std::runtime_error. */
BusConnection connect_to_system_bus();

/** @throws std::runtime_error. */
Client this_television();

/** Returns all calls to the NCP host since it started, for example "ember_set_channel(11)". @throws Failure. */
std::vector<std::string> host_calls(const Client& client);

/** Sets how the NCP host answers a method, see `parse_behaviour`. @throws Failure, UsageError. */
void set_host_behaviour(const Client& client, const std::string& method, const std::string& behaviour);

/** Sends "ncp_event" `times` times with values in GVariant text, for example "(7, true)". Needs no NCP host. */
void send_event(const Client& client, const std::string& values, int times = 1);

/** Returns the radio module's state: "{'mode': <'off'>, ..., 'stream': <false>, ...}". @throws Failure. */
std::string radio_state(const Client& client);

/** Saves a PNG screenshot. @throws Failure if the screen cannot be read or the file cannot be written. */
void take_picture(const std::string& path);

} // namespace simulator
