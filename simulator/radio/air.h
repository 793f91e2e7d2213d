/**
 * The air that several televisions share: a folder in which every running stream is a listening socket, named
 * CHANNEL.POWER.NUMBER. Who listens connects to it; the system ends that connection with the stream, however the stream
 * ends.
 */
#pragma once

#include "base/event_source.h"
#include "base/owned.h"

#include <filesystem>
#include <map>
#include <string>

namespace simulator {

/** One stream on the air, there as long as this lives. */
class AirStream {
public:
    /** @throws std::system_error when the folder takes no socket. */
    AirStream(const std::filesystem::path& air, int channel, int power);
    AirStream(const AirStream&) = delete;
    AirStream& operator=(const AirStream&) = delete;
    ~AirStream();

private:
    std::filesystem::path path_;
    FileDescriptor socket_;
};

/** Tells of the streams on the air, from those that run when it begins; wakes only when one begins or ends. */
class AirWatch {
public:
    using Begun = std::function<void(const std::string& stream, int channel, int power)>;
    using Ended = std::function<void(const std::string& stream)>;

    /** @throws std::system_error when the folder cannot be watched. */
    AirWatch(std::filesystem::path air, Begun begun, Ended ended);

private:
    struct Heard {
        FileDescriptor connection;
        EventSource end;
    };

    void look_around();
    void look_at(const std::string& stream);

    std::filesystem::path air_;
    Begun begun_;
    Ended ended_;
    std::map<std::string, Heard> heard_;
    FileDescriptor changes_;
    EventSource change_reader_;
};

} // namespace simulator
