/** The running televisions of this user. */
#pragma once

#include "base/descriptors.h"
#include "base/strings.h"
#include "base/wait_until.h"
#include "client/client.h"

#include <algorithm>
#include <filesystem>

namespace simulator {

/** The folder that contains one folder per television; simulator/tvctl passes its path in this variable. */
inline std::filesystem::path control_sockets() {
    const char* const given = g_getenv("VELMORA_CONTROL_SOCKETS");
    return given != nullptr && *given != '\0' ? given : "/nowhere";
}

/** The socket of a television's system bus. */
inline std::string control_socket_of(const std::string& name) {
    return control_sockets() / name / "system_bus";
}

/** The names of the running televisions in alphabetical order. */
inline std::vector<std::string> running_televisions() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(control_sockets(), error))
        if (const std::string name = entry.path().filename(); connect_to(control_socket_of(name)))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

/**
 * Finds a television; waits if it is not running yet.
 *
 * @param name  of the television; empty: the only one that is running.
 * @param limit how long to wait for it.
 * @return its name.
 * @throws UsageError if there is none, or several and `name` is empty.
 */
inline std::string find_television(const std::string& name, std::chrono::milliseconds limit) {
    // Do not connect to the other televisions: fifty waiting clients would keep fifty buses busy.
    const auto is_there = [&name] {
        return name.empty() ? !running_televisions().empty()
                            : static_cast<bool>(connect_to(control_socket_of(name)));
    };
    if (wait_until(is_there, limit) && !name.empty())
        return name;
    const auto names = running_televisions();
    if (!name.empty())
        throw UsageError("no television named " + name + " is running" +
                         (names.empty() ? "" : "; running: " + joined(names, ", ")));
    if (names.empty())
        throw UsageError("no television is running; start one with simulator/tv (installed: velmora-tv)");
    if (names.size() > 1)
        throw UsageError("several televisions are running (" + joined(names, ", ") +
                         "): choose one with -n NAME");
    return names.front();
}

} // namespace simulator
