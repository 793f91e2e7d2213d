/** The radio of a running television: its NCP host service and its module. */
#pragma once

#include "client.h"

namespace simulator {

/** Every call of the host's methods since it started, "ember_set_channel(11)". @throws Failure. */
std::vector<std::string> asked_of_host(const Client& client);

/** From now on the host answers a method like that, see `parse_behaviour`. @throws Failure, WrongUse. */
void let_host_answer(const Client& client, const std::string& method, const std::string& behaviour);

/** Sends "ncp_event" with these values, written as GVariant text: "(7, true)". There need be no host. */
void send_event(const Client& client, const std::string& values);

struct RadioState {
    std::string mode; /**< "off", "tx" or "rx" */
    bool streams = false;
};
/** What the module does. @throws Failure. */
RadioState radio_state(const Client& client);

} // namespace simulator
