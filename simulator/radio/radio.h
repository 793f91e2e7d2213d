/** The radio of the module: its settings, what it refuses, and what it hears. */
#pragma once

#include "radio/protocol.h"

#include <chrono>
#include <map>

namespace simulator {

class Radio {
public:
    using Time = std::chrono::steady_clock::time_point;
    enum class Mode { off, transmit, receive };

    /** The settings after a reset. */
    struct State {
        Mode mode = Mode::off;
        int channel = 11;       /**< 11 to 26 */
        int power = 0;          /**< 0 to 20 */
        bool streams = false;   /**< it sends */
        long long received = 0; /**< packets since the RX test's start or the last reset of the count */
    };

    /** 20 packets a second arrive on channel 20, one every four seconds on the others. */
    Radio();

    /**
     * Performs a request.
     *
     * Commands: reset, start MODE (0 TX, 1 RX), stop, set_channel N, set_power N, start_stream, stop_stream,
     * get_rx_statistics, reset_rx_statistics. Everything but reset and start is refused while the radio is off.
     *
     * @return the answer to that request: a `RadioCode`, and for get_rx_statistics "COUNT packets on channel N".
     */
    RadioAnswer handle(const RadioRequest& request, Time now);

    /** From now on so many packets a second arrive on a channel. @return false for no such channel or rate. */
    bool set_traffic(int channel, double packets_per_second, Time now);
    /**
     * From now on another television streams: 100 packets a second arrive at power 20, two less for each step below.
     *
     * @return false for no such channel or power.
     */
    bool add_stream(const std::string& name, int channel, int power, Time now);
    /** That stream has ended, or never existed. */
    void remove_stream(const std::string& name, Time now);
    /** The television has closed the serial line: the test ends. */
    void lose_line(Time now);

    [[nodiscard]] State state(Time now) const;
    /** Packets a second that are received at present. */
    [[nodiscard]] double packets_per_second() const;

private:
    /** Packet K arrives K / packets_per_second after `since`. */
    struct Sender {
        int channel = 0;
        double packets_per_second = 0; /**< 0 or more */
        Time since;
    };

    RadioCode perform(const RadioRequest& request);
    RadioCode start(int mode);
    RadioCode set(int& setting, int value, bool exists, RadioCode refusal) const;
    RadioCode stream(bool streams);
    [[nodiscard]] bool hears(const Sender& sender) const;
    void listen_until(Time now);

    State state_;
    Time listened_until_;
    std::map<std::string, Sender> senders_;
};

/** "off", "tx" or "rx". */
const char* name_of(Radio::Mode mode);

} // namespace simulator
