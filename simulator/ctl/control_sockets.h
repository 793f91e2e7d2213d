/** The running televisions of this user. */
#pragma once

#include "base/descriptors.h"
#include "base/strings.h"
#include "base/wait_until.h"
#include "client/client.h"

#include <algorithm>
#include <filesystem>

namespace simulator {

/** The folder that simulator/tvctl names, with a folder for each television. */
inline std::filesystem::path control_sockets() {
    const char* const given = g_getenv("VELMORA_CONTROL_SOCKETS");
    return given != nullptr && *given != '\0' ? given : "/nowhere";
}

/** Where the system bus of a television listens. */
inline std::string control_socket_of(const std::string& name) {
    return control_sockets() / name / "system_bus";
}

/** The names in alphabetical order, without those of dead televisions. */
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
 * Finds a television, and waits for one that does not run yet.
 *
 * @param name  of the television; empty: the only one that runs.
 * @param limit for it to appear.
 * @return its name.
 * @throws WrongUse if there is none, or more than one and none was named.
 */
inline std::string find_television(const std::string& name, std::chrono::milliseconds limit) {
    // Looks at no other socket: fifty who wait would keep fifty buses busy.
    const auto is_there = [&name] {
        return name.empty() ? !running_televisions().empty()
                            : static_cast<bool>(connect_to(control_socket_of(name)));
    };
    if (wait_until(is_there, limit) && !name.empty())
        return name;
    const auto names = running_televisions();
    if (!name.empty())
        throw WrongUse("no television called " + name + " runs" +
                       (names.empty() ? "" : "; there is " + joined(names, ", ")));
    if (names.empty())
        throw WrongUse("no television runs; simulator/tv, installed velmora-tv, starts one");
    if (names.size() > 1)
        throw WrongUse("several televisions run (" + joined(names, ", ") + "): say which with -n NAME");
    return names.front();
}

} // namespace simulator
