/** The radio in the module: its settings, the commands it refuses, and the packets it receives. */
#pragma once

#include "radio/protocol.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>

namespace simulator {

class Radio {
public:
    using Time = std::chrono::steady_clock::time_point;
    enum class Mode { off, transmit, receive };

    /** The initial values are those after a reset. */
    struct State {
        Mode mode = Mode::off;
        int channel = 11;       /**< 11 to 26 */
        int power = 0;          /**< 0 to 20 */
        bool streams = false;   /**< it transmits a stream */
        long long received = 0; /**< packets since the RX test's start or the last reset of the count */
    };

    /** Sets the background traffic: 20 packets per second on channel 20, 0.25 on the others. */
    Radio() {
        for (int channel = lowest_channel; channel <= highest_channel; ++channel)
            set_traffic(channel, channel == busy_channel ? busy_packets_per_second : quiet_packets_per_second,
                        {});
    }

    /**
     * Performs a request.
     *
     * Commands: reset, start MODE (0 TX, 1 RX), stop, set_channel N, set_power N, start_stream, stop_stream,
     * get_rx_statistics, reset_rx_statistics. While the radio is off, it refuses all but reset and start.
     *
     * @return the answer: a `RadioCode`, and for get_rx_statistics also "COUNT packets on channel N".
     */
    RadioAnswer handle(const RadioRequest& request, Time now) {
        listen_until(now);
        const auto code = perform(request);
        RadioAnswer answer{request.number, static_cast<int>(code), {}};
        if (code == RadioCode::ok && request.command == "get_rx_statistics")
            answer.text =
                std::to_string(state_.received) + " packets on channel " + std::to_string(state_.channel);
        return answer;
    }

    /** Changes the background traffic of a channel. @return false for an invalid channel or rate. */
    bool set_traffic(int channel, double packets_per_second, Time now) {
        if (!is_channel(channel) || packets_per_second < 0)
            return false;
        listen_until(now);
        senders_["traffic on channel " + std::to_string(channel)] = {channel, packets_per_second, now};
        return true;
    }
    /**
     * Adds a stream of another television: 100 packets per second at power 20, two less per power step below.
     *
     * @return false for an invalid channel or power.
     */
    bool add_stream(const std::string& name, int channel, int power, Time now) {
        if (!is_channel(channel) || !is_power(power))
            return false;
        listen_until(now);
        const auto rate = stream_packets_per_second - lost_packets_per_power * (highest_power - power);
        senders_[name] = {channel, rate, now};
        return true;
    }
    /** Removes a stream, if it exists. */
    void remove_stream(const std::string& name, Time now) {
        listen_until(now);
        senders_.erase(name);
    }
    /** Ends the test after the television has closed the serial line. */
    void lose_line(Time now) {
        listen_until(now);
        perform({0, "stop", std::nullopt});
    }

    /** Counts packets on demand, so that packets do not wake the process. */
    [[nodiscard]] State state(Time now) const {
        State state = state_;
        for (const auto& [name, sender] : senders_) {
            const auto packets_until = [&sender = sender](Time moment) {
                const std::chrono::duration<double> seconds = std::max(moment, sender.since) - sender.since;
                return static_cast<long long>(std::floor(seconds.count() * sender.packets_per_second));
            };
            if (hears(sender))
                state.received += packets_until(now) - packets_until(listened_until_);
        }
        return state;
    }
    /** Packets per second that it currently receives. */
    [[nodiscard]] double packets_per_second() const {
        double sum = 0;
        for (const auto& [name, sender] : senders_)
            sum += hears(sender) ? sender.packets_per_second : 0;
        return sum;
    }

private:
    static constexpr int lowest_channel = 11;
    static constexpr int highest_channel = 26;
    static constexpr int highest_power = 20;
    static constexpr int busy_channel = 20;
    static constexpr double busy_packets_per_second = 20;
    static constexpr double quiet_packets_per_second = 0.25;
    static constexpr double stream_packets_per_second = 100;
    static constexpr double lost_packets_per_power = 2;

    static bool is_channel(int channel) { return channel >= lowest_channel && channel <= highest_channel; }
    static bool is_power(int power) { return power >= 0 && power <= highest_power; }

    /** Packet K arrives K / packets_per_second seconds after `since`. */
    struct Sender {
        int channel = 0;
        double packets_per_second = 0; /**< 0 or more */
        Time since;
    };

    RadioCode perform(const RadioRequest& request) {
        const std::string& command = request.command;
        if (command == "reset") {
            state_ = {};
            return RadioCode::ok;
        }
        if (command == "start" && request.argument)
            return start(*request.argument);
        if (state_.mode == Mode::off)
            return RadioCode::not_started;
        if (command == "stop") {
            state_.mode = Mode::off;
            state_.streams = false;
            return RadioCode::ok;
        }
        if (command == "set_channel" && request.argument)
            return set(state_.channel, *request.argument, is_channel(*request.argument),
                       RadioCode::bad_channel);
        if (command == "set_power" && request.argument)
            return set(state_.power, *request.argument, is_power(*request.argument), RadioCode::bad_power);
        if (command == "start_stream" || command == "stop_stream")
            return stream(command == "start_stream");
        if (command != "get_rx_statistics" && command != "reset_rx_statistics")
            return RadioCode::bad_request;
        if (state_.mode != Mode::receive)
            return RadioCode::wrong_mode;
        if (command == "reset_rx_statistics")
            state_.received = 0;
        return RadioCode::ok;
    }
    RadioCode start(int mode) {
        if (state_.mode != Mode::off)
            return RadioCode::already_started;
        if (mode != 0 && mode != 1)
            return RadioCode::bad_mode;
        state_.mode = mode == 0 ? Mode::transmit : Mode::receive;
        state_.received = 0;
        return RadioCode::ok;
    }
    RadioCode set(int& setting, int value, bool exists, RadioCode refusal) const {
        if (state_.streams)
            return RadioCode::streaming;
        if (!exists)
            return refusal;
        setting = value;
        return RadioCode::ok;
    }
    RadioCode stream(bool streams) {
        if (state_.mode != Mode::transmit)
            return RadioCode::wrong_mode;
        if (state_.streams == streams)
            return streams ? RadioCode::streaming : RadioCode::not_streaming;
        state_.streams = streams;
        return RadioCode::ok;
    }
    [[nodiscard]] bool hears(const Sender& sender) const {
        return state_.mode == Mode::receive && sender.channel == state_.channel;
    }
    void listen_until(Time now) {
        state_ = state(now);
        listened_until_ = now;
    }

    State state_;
    Time listened_until_;
    std::map<std::string, Sender> senders_;
};

/** "off", "tx" or "rx". */
inline const char* name_of(Radio::Mode mode) {
    return mode == Radio::Mode::transmit ? "tx" : mode == Radio::Mode::receive ? "rx" : "off";
}

} // namespace simulator
