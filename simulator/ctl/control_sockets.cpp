#include "control_sockets.h"

#include "base/descriptors.h"
#include "base/strings.h"
#include "base/wait_until.h"
#include "client/client.h"

#include <algorithm>
#include <filesystem>

namespace simulator {
namespace {

namespace fs = std::filesystem;

/** Where simulator/tvctl says that they are. */
fs::path folder() {
    const char* const given = g_getenv("VELMORA_CONTROL_SOCKETS");
    return given != nullptr && *given != '\0' ? given : "/nowhere";
}

fs::path socket_of(const std::string& name) { return folder() / name / "system_bus"; }

bool runs(const std::string& name) { return static_cast<bool>(connect_to(socket_of(name))); }

} // namespace

std::vector<std::string> running_televisions() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder(), error))
        if (const std::string name = entry.path().filename(); runs(name))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

std::string find_television(const std::string& name, std::chrono::milliseconds limit) {
    // Only the socket that is wanted: fifty who wait would keep fifty buses busy.
    const auto is_there = [&name] { return name.empty() ? !running_televisions().empty() : runs(name); };
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

std::string bus_address_of(const std::string& name) {
    g_autofree char* path = g_dbus_address_escape_value(socket_of(name).c_str());
    return "unix:path=" + std::string(path);
}

} // namespace simulator
