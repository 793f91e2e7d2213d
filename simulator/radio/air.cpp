#include "air.h"

#include "base/descriptors.h"

#include <sys/inotify.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <sstream>
#include <system_error>

namespace simulator {
namespace {

[[noreturn]] void fail_at(const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), path.string());
}

/** Process numbers are each television's own, so two streams may have the same. */
std::string unique_number() {
    g_autofree gchar* number = g_uuid_string_random();
    return number;
}

} // namespace

AirStream::AirStream(const std::filesystem::path& air, int channel, int power) {
    const auto name = std::to_string(channel) + "." + std::to_string(power) + "." + unique_number();
    // Nobody may find it before it listens, or it would be taken for what a killed television left.
    const auto hidden = air / ("." + name);
    path_ = air / name;
    socket_ = listen_at(hidden, SOMAXCONN); // the connections wait there, never accepted
    if (!socket_)
        fail_at(hidden);
    std::filesystem::rename(hidden, path_);
}

AirStream::~AirStream() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

AirWatch::AirWatch(std::filesystem::path air, Begun begun, Ended ended)
    : air_(std::move(air)), begun_(std::move(begun)), ended_(std::move(ended)),
      changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (!changes_ || inotify_add_watch(changes_.get(), air_.c_str(), IN_MOVED_TO | IN_ONLYDIR) < 0)
        fail_at(air_);
    change_reader_ = call_when_readable(changes_.get(), [this] { look_around(); });
    look_around();
}

void AirWatch::look_around() {
    std::array<char, 4096> changes{};
    while (read(changes_.get(), changes.data(), changes.size()) > 0) {
        // what has changed is looked for in the folder, which cannot be out of step
    }
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(air_, error))
        look_at(entry.path().filename());
}

void AirWatch::look_at(const std::string& stream) {
    std::istringstream name(stream);
    int channel = 0;
    int power = 0;
    char point = 0;
    if (heard_.contains(stream) || !(name >> channel >> point >> power))
        return;
    auto connection = connect_to(air_ / stream);
    if (!connection) {
        std::error_code ignored;
        if (errno == ECONNREFUSED) // a killed television left it
            std::filesystem::remove(air_ / stream, ignored);
        return;
    }
    auto end = call_when_readable(connection.get(), [this, stream] {
        ended_(stream);
        heard_.erase(stream);
    });
    heard_[stream] = {std::move(connection), std::move(end)};
    begun_(stream, channel, power);
}

} // namespace simulator
