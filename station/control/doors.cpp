#include "doors.h"

#include "common/bus_object.h"
#include "common/local_socket.h"
#include "common/texts.h"
#include "common/waiting.h"
#include "remote/failure.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace station {
namespace {

namespace fs = std::filesystem;

bool is_own(const fs::path& folder) {
    struct stat found {};
    return lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == getuid();
}

/** Where station/tv leaves them (station/door.sh). */
fs::path folder_of_doors() {
    const std::string user = std::to_string(getuid());
    const char* const given = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): one thread
    const fs::path runtime = given != nullptr && *given != '\0' ? given : "/run/user/" + user;
    if (is_own(runtime) && access(runtime.c_str(), W_OK) == 0)
        return runtime / "velmora-televisions";
    return "/tmp/velmora-televisions-" + user;
}

fs::path door_of(const std::string& name) { return folder_of_doors() / name / "system_bus"; }

/** Whether it listens; another user's folder could lead anywhere. */
bool is_open(const std::string& name) {
    return is_own(folder_of_doors()) && static_cast<bool>(connect_to(door_of(name)));
}

std::string find_door(const std::string& name) {
    if (!name.empty() && is_open(name))
        return door_of(name);
    const auto names = running_televisions();
    if (!name.empty())
        throw WrongUse("no television called " + name + " runs" +
                       (names.empty() ? "" : "; there is " + joined(names, ", ")));
    if (names.empty())
        throw WrongUse("no television runs; station/tv, installed velmora-tv, starts one");
    if (names.size() > 1)
        throw WrongUse("several televisions run (" + joined(names, ", ") + "): say which with -n NAME");
    return door_of(names.front());
}

/** Knocks only at the door that is wanted: fifty who wait would keep fifty buses busy. */
void wait_for_door(const std::string& name, std::chrono::milliseconds patience) {
    (void)comes_true([&name] { return name.empty() ? !running_televisions().empty() : is_open(name); },
                     patience);
}

} // namespace

std::vector<std::string> running_televisions() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder_of_doors(), error))
        if (const std::string name = entry.path().filename(); is_open(name))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

BusConnection open_door(const std::string& name, std::chrono::milliseconds patience) {
    wait_for_door(name, patience);
    const std::string door = find_door(name);
    g_autofree char* path = g_dbus_address_escape_value(door.c_str());
    return connect_to_bus("unix:path=" + std::string(path));
}

} // namespace station
