/** What arrives at a radio: packets of many senders, each at an even pace on its channel. */
#pragma once

#include <chrono>
#include <map>
#include <string>

namespace simulator {

/** Packet K of a sender arrives K / packets_per_second after `since`. */
struct Sender {
    using Time = std::chrono::steady_clock::time_point;

    int channel = 0;
    double packets_per_second = 0; /**< 0 or more */
    Time since;
};

/** The senders around a radio. Counts are worked out when asked for, so nothing wakes for a packet. */
class Traffic {
public:
    /** Adds a sender, or puts it in the place of the one of that name. */
    void add(const std::string& name, const Sender& sender) { senders_[name] = sender; }
    void remove(const std::string& name) { senders_.erase(name); }

    /** Whole packets that arrive on a channel after the one moment and up to the other. */
    [[nodiscard]] long long packets(int channel, Sender::Time after, Sender::Time until) const;
    /** Packets a second of all senders on a channel. */
    [[nodiscard]] double packets_per_second(int channel) const;

private:
    std::map<std::string, Sender> senders_;
};

} // namespace simulator
