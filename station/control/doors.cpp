#include "doors.h"

#include "common/bus_object.h"
#include "common/local_socket.h"
#include "common/texts.h"
#include "remote/failure.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
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

bool is_open(const std::string& name) { return static_cast<bool>(connect_to(door_of(name))); }

std::string find_door(const std::string& name) {
    const auto names = running_televisions();
    if (!name.empty() && std::ranges::find(names, name) == names.end())
        throw WrongUse("no television called " + name + " runs" +
                       (names.empty() ? "" : "; there is " + joined(names, ", ")));
    if (names.empty())
        throw WrongUse("no television runs; station/tv, installed velmora-tv, starts one");
    if (name.empty() && names.size() > 1)
        throw WrongUse("several televisions run (" + joined(names, ", ") + "): say which with -n NAME");
    return door_of(name.empty() ? names.front() : name);
}

std::string patient_door(const std::string& name, std::chrono::milliseconds patience) {
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        try {
            return find_door(name);
        } catch (const WrongUse&) {
            if (std::chrono::steady_clock::now() >= deadline)
                throw;
        }
        std::this_thread::sleep_for(10ms);
    }
}

} // namespace

std::vector<std::string> running_televisions() {
    std::vector<std::string> names;
    const fs::path folder = folder_of_doors();
    if (!is_own(folder)) // another user's could lead anywhere
        return names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (const std::string name = entry.path().filename(); is_open(name))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

BusConnection open_door(const std::string& name, std::chrono::milliseconds patience) {
    const std::string door = patient_door(name, patience);
    g_autofree char* path = g_dbus_address_escape_value(door.c_str());
    return connect_to_bus("unix:path=" + std::string(path));
}

} // namespace station
