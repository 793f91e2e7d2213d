/** The radio of the module: what it is set to, what it refuses, and what it hears. */
#pragma once

#include "radio/protocol.h"

#include <chrono>
#include <map>

namespace simulator {

class Radio {
public:
    using Time = std::chrono::steady_clock::time_point;
    enum class Mode { off, transmit, receive };

    static constexpr int lowest_channel = 11;
    static constexpr int highest_channel = 26;
    static constexpr int highest_power = 20;

    /** Traffic on every channel until told otherwise, and on the busy one. */
    static constexpr double quiet_packets_per_second = 0.25;
    static constexpr int busy_channel = 20;
    static constexpr double busy_packets_per_second = 20;

    /** What is received a second of another television's stream: 100 packets at the highest power, two less
     * for each step below it. */
    static constexpr double stream_packets_per_second = 100;
    static constexpr double lost_packets_per_power = 2;

    Radio();

    /**
     * Does what a request asks.
     *
     * Commands: reset, start MODE (0 TX, 1 RX), stop, set_channel N, set_power N, start_stream, stop_stream,
     * get_rx_statistics, reset_rx_statistics. Everything but reset and start is refused while the radio is off.
     *
     * @return the answer to that request: a `RadioCode`, and for get_rx_statistics the text
     *         "COUNT packets on channel N".
     */
    RadioAnswer handle(const RadioRequest& request, Time now);

    /** From now on so many packets a second arrive on a channel. @return false for no such channel or rate. */
    bool set_traffic(int channel, double packets_per_second, Time now);
    /** From now on another television streams. @return false for no such channel or power. */
    bool add_stream(const std::string& name, int channel, int power, Time now);
    /** That stream has ended, or was never there. */
    void remove_stream(const std::string& name, Time now);
    /** The television has let go of the serial line: the radio falls silent. */
    void lose_line(Time now);

    [[nodiscard]] Mode mode() const { return mode_; }
    [[nodiscard]] int channel() const { return channel_; }
    [[nodiscard]] int power() const { return power_; }
    [[nodiscard]] bool streams() const { return streams_; }
    /** Packets received since the RX test's start or the last reset of the count. */
    [[nodiscard]] long long received(Time now) const;
    /** Packets a second that are received at present. */
    [[nodiscard]] double packets_per_second() const;

private:
    /** Packet K arrives K / packets_per_second after `since`. */
    struct Sender {
        int channel = 0;
        double packets_per_second = 0; /**< 0 or more */
        Time since;
    };

    RadioCode reset();
    RadioCode start(int mode);
    RadioCode stop();
    RadioCode set_channel(int channel);
    RadioCode set_power(int power);
    RadioCode start_stream();
    RadioCode stop_stream();
    RadioCode get_rx_statistics();
    RadioCode reset_rx_statistics();
    RadioCode perform(const RadioRequest& request);
    void listen_until(Time now);

    Mode mode_ = Mode::off;
    int channel_ = lowest_channel;
    int power_ = 0;
    bool streams_ = false;
    long long received_ = 0;
    Time listened_until_;
    std::map<std::string, Sender> senders_;
};

/** "off", "tx" or "rx". */
const char* name_of(Radio::Mode mode);

} // namespace simulator
