/**
 * Streams between televisions: each stream is a listening socket, CHANNEL.POWER.UUID, in a shared folder. Receivers
 * connect to this socket, so the kernel notifies them when the stream ends, even if its television is killed.
 */
#pragma once

#include "base/descriptors.h"
#include "base/event_source.h"

#include <sys/inotify.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <map>
#include <sstream>

namespace simulator {

/** Publishes a stream until destroyed. */
class AirStream {
public:
    /** @throws std::system_error if the socket cannot be created. */
    AirStream(const std::filesystem::path& air, int channel, int power) {
        g_autofree char* number = g_uuid_string_random(); // process IDs are unique only within one television
        const auto name = std::to_string(channel) + "." + std::to_string(power) + "." + number;
        // The socket is hidden until it listens: otherwise another television would remove it as stale.
        const auto hidden = air / ("." + name);
        path_ = air / name;
        socket_ = listen_at(hidden, SOMAXCONN); // connections are never accepted
        if (!socket_)
            fail_with_errno(hidden);
        std::filesystem::rename(hidden, path_);
    }
    ~AirStream() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

private:
    std::filesystem::path path_;
    FileDescriptor socket_;
};

/** Reports streams that begin or end, and those that are already running; wakes up for nothing else. */
class AirWatch {
public:
    using Begun = std::function<void(const std::string& stream, int channel, int power)>;
    using Ended = std::function<void(const std::string& stream)>;

    /** @throws std::system_error if the folder cannot be watched. */
    AirWatch(std::filesystem::path air, Begun begun, Ended ended)
        : air_(std::move(air)), begun_(std::move(begun)), ended_(std::move(ended)),
          changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        if (!changes_ || inotify_add_watch(changes_.get(), air_.c_str(), IN_MOVED_TO | IN_ONLYDIR) < 0)
            fail_with_errno(air_);
        change_reader_ = call_when_readable(changes_.get(), [this] { scan(); });
        scan();
    }

private:
    struct Heard {
        FileDescriptor connection;
        EventSource end;
    };

    void scan() {
        std::array<char, 4096> changes{};
        while (read(changes_.get(), changes.data(), changes.size()) > 0) {
            // discard the events; the folder itself is read below
        }
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(air_, error))
            if (const std::string stream = entry.path().filename(); !heard_.contains(stream))
                listen_to(stream);
    }

    void listen_to(const std::string& stream) {
        std::istringstream name(stream);
        int channel = 0;
        int power = 0;
        char point = 0;
        if (!(name >> channel >> point >> power))
            return;
        auto connection = connect_to(air_ / stream);
        if (!connection) {
            std::error_code ignored;
            if (errno == ECONNREFUSED) // left by a killed television
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

    std::filesystem::path air_;
    Begun begun_;
    Ended ended_;
    std::map<std::string, Heard> heard_;
    FileDescriptor changes_;
    EventSource change_reader_;
};

} // namespace simulator
