#include "radio.h"

#include <algorithm>
#include <cmath>

namespace simulator {
namespace {

constexpr int lowest_channel = 11;
constexpr int highest_channel = 26;
constexpr int highest_power = 20;
constexpr int busy_channel = 20;
constexpr double busy_packets_per_second = 20;
constexpr double quiet_packets_per_second = 0.25;
constexpr double stream_packets_per_second = 100;
constexpr double lost_packets_per_power = 2;

bool is_channel(int channel) { return channel >= lowest_channel && channel <= highest_channel; }

bool is_power(int power) { return power >= 0 && power <= highest_power; }

} // namespace

Radio::Radio() {
    for (int channel = lowest_channel; channel <= highest_channel; ++channel)
        set_traffic(channel, channel == busy_channel ? busy_packets_per_second : quiet_packets_per_second,
                    {});
}

const char* name_of(Radio::Mode mode) {
    return mode == Radio::Mode::transmit ? "tx" : mode == Radio::Mode::receive ? "rx" : "off";
}

RadioAnswer Radio::handle(const RadioRequest& request, Time now) {
    listen_until(now);
    const auto code = perform(request);
    RadioAnswer answer{request.number, static_cast<int>(code), {}};
    if (code == RadioCode::ok && request.command == "get_rx_statistics")
        answer.text =
            std::to_string(state_.received) + " packets on channel " + std::to_string(state_.channel);
    return answer;
}

RadioCode Radio::perform(const RadioRequest& request) {
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
        return set(state_.channel, *request.argument, is_channel(*request.argument), RadioCode::bad_channel);
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

RadioCode Radio::start(int mode) {
    if (state_.mode != Mode::off)
        return RadioCode::already_started;
    if (mode != 0 && mode != 1)
        return RadioCode::bad_mode;
    state_.mode = mode == 0 ? Mode::transmit : Mode::receive;
    state_.received = 0;
    return RadioCode::ok;
}

RadioCode Radio::set(int& setting, int value, bool exists, RadioCode refusal) const {
    if (state_.streams)
        return RadioCode::streaming;
    if (!exists)
        return refusal;
    setting = value;
    return RadioCode::ok;
}

RadioCode Radio::stream(bool streams) {
    if (state_.mode != Mode::transmit)
        return RadioCode::wrong_mode;
    if (state_.streams == streams)
        return streams ? RadioCode::streaming : RadioCode::not_streaming;
    state_.streams = streams;
    return RadioCode::ok;
}

bool Radio::set_traffic(int channel, double packets_per_second, Time now) {
    if (!is_channel(channel) || packets_per_second < 0)
        return false;
    listen_until(now);
    senders_["traffic on channel " + std::to_string(channel)] = {channel, packets_per_second, now};
    return true;
}

bool Radio::add_stream(const std::string& name, int channel, int power, Time now) {
    if (!is_channel(channel) || !is_power(power))
        return false;
    listen_until(now);
    const auto rate = stream_packets_per_second - lost_packets_per_power * (highest_power - power);
    senders_[name] = {channel, rate, now};
    return true;
}

void Radio::remove_stream(const std::string& name, Time now) {
    listen_until(now);
    senders_.erase(name);
}

void Radio::lose_line(Time now) {
    listen_until(now);
    perform({0, "stop", std::nullopt});
}

bool Radio::hears(const Sender& sender) const {
    return state_.mode == Mode::receive && sender.channel == state_.channel;
}

/** Packets are counted on demand, so that no packet wakes the process. */
Radio::State Radio::state(Time now) const {
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

double Radio::packets_per_second() const {
    double sum = 0;
    for (const auto& [name, sender] : senders_)
        sum += hears(sender) ? sender.packets_per_second : 0;
    return sum;
}

void Radio::listen_until(Time now) {
    state_ = state(now);
    listened_until_ = now;
}

} // namespace simulator
