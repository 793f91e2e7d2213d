/** The television's NCP host service, told how to answer. */
#pragma once

#include "model/dbus_client.h"
#include "remote/remote.h"

#include <set>
#include <string>
#include <vector>

class Host {
public:
    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    /** Every method answers as usual again. */
    ~Host();

    /** See `NcpHost.Answer` of the television: "reply (0,)", "error", "dies". One that has died is started
     * again. */
    void answer(const std::string& method, const std::string& behaviour);

    /** The calls since this was made: "ember_set_channel(11)". */
    [[nodiscard]] std::vector<std::string> calls();

    /** Says "ncp_event" with values, for example "('ready',)", and returns when it was dispatched on this
     * thread. */
    void emit(const std::string& values);

private:
    std::vector<std::string> all_calls();

    station::Remote television_;
    std::set<std::string> changed_;
    std::size_t calls_before_ = 0;
};

/** Drops the process's shared system bus connection, so that the next one is made with the present address. */
void forget_system_bus();
