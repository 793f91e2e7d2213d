#include "control_sockets.h"

#include "base/bus.h"
#include "base/local_socket.h"
#include "base/strings.h"
#include "base/wait_until.h"
#include "client/failure.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace simulator {
namespace {

namespace fs = std::filesystem;

bool is_own(const fs::path& folder) {
    struct stat found {};
    return lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == getuid();
}

/** Where simulator/tv leaves them (simulator/sandbox/control_socket.sh). */
fs::path control_socket_folder() {
    const std::string user = std::to_string(getuid());
    const char* const given = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): one thread
    const fs::path runtime = given != nullptr && *given != '\0' ? given : "/run/user/" + user;
    if (is_own(runtime) && access(runtime.c_str(), W_OK) == 0)
        return runtime / "velmora-televisions";
    return "/tmp/velmora-televisions-" + user;
}

fs::path control_socket_of(const std::string& name) { return control_socket_folder() / name / "system_bus"; }

/** Whether it listens; another user's folder could lead anywhere. */
bool is_open(const std::string& name) {
    return is_own(control_socket_folder()) && static_cast<bool>(connect_to(control_socket_of(name)));
}

std::string find_control_socket(const std::string& name) {
    if (!name.empty() && is_open(name))
        return control_socket_of(name);
    const auto names = running_televisions();
    if (!name.empty())
        throw WrongUse("no television called " + name + " runs" +
                       (names.empty() ? "" : "; there is " + joined(names, ", ")));
    if (names.empty())
        throw WrongUse("no television runs; simulator/tv, installed velmora-tv, starts one");
    if (names.size() > 1)
        throw WrongUse("several televisions run (" + joined(names, ", ") + "): say which with -n NAME");
    return control_socket_of(names.front());
}

/** Tries only the socket that is wanted: fifty who wait would keep fifty buses busy. */
void wait_for_control_socket(const std::string& name, std::chrono::milliseconds patience) {
    (void)wait_until([&name] { return name.empty() ? !running_televisions().empty() : is_open(name); },
                     patience);
}

} // namespace

std::vector<std::string> running_televisions() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(control_socket_folder(), error))
        if (const std::string name = entry.path().filename(); is_open(name))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

BusConnection open_control_socket(const std::string& name, std::chrono::milliseconds patience) {
    wait_for_control_socket(name, patience);
    const std::string socket = find_control_socket(name);
    g_autofree char* path = g_dbus_address_escape_value(socket.c_str());
    return connect_to_bus("unix:path=" + std::string(path));
}

} // namespace simulator
