#include "radio.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace simulator {
namespace {

bool is_channel(int channel) { return channel >= Radio::lowest_channel && channel <= Radio::highest_channel; }

bool is_power(int power) { return power >= 0 && power <= Radio::highest_power; }

std::string name_of_traffic(int channel) { return "traffic on channel " + std::to_string(channel); }

} // namespace

Radio::Radio() {
    for (int channel = lowest_channel; channel <= highest_channel; ++channel) {
        set_traffic(channel, channel == busy_channel ? busy_packets_per_second : quiet_packets_per_second,
                    {});
    }
}

const char* name_of(Radio::Mode mode) {
    return mode == Radio::Mode::transmit ? "tx" : mode == Radio::Mode::receive ? "rx" : "off";
}

RadioAnswer Radio::handle(const RadioRequest& request, Time now) {
    listen_until(now);
    const auto code = perform(request);
    RadioAnswer answer{request.number, static_cast<int>(code), {}};
    if (code == RadioCode::ok && request.command == "get_rx_statistics") {
        answer.text = std::to_string(received(now)) + " packets on channel " + std::to_string(channel_);
    }
    return answer;
}

RadioCode Radio::perform(const RadioRequest& request) {
    static const std::map<std::string, RadioCode (Radio::*)()> plain{
        {"stop", &Radio::stop},
        {"start_stream", &Radio::start_stream},
        {"stop_stream", &Radio::stop_stream},
        {"get_rx_statistics", &Radio::get_rx_statistics},
        {"reset_rx_statistics", &Radio::reset_rx_statistics}};
    static const std::map<std::string, RadioCode (Radio::*)(int)> with_argument{
        {"set_channel", &Radio::set_channel}, {"set_power", &Radio::set_power}};
    if (request.command == "reset")
        return reset();
    if (request.command == "start" && request.argument)
        return start(*request.argument);
    if (mode_ == Mode::off)
        return RadioCode::not_started;
    if (const auto found = plain.find(request.command); found != plain.end())
        return (this->*found->second)();
    const auto found = with_argument.find(request.command);
    if (found == with_argument.end() || !request.argument)
        return RadioCode::bad_request;
    return (this->*found->second)(*request.argument);
}

RadioCode Radio::reset() {
    Radio fresh;
    fresh.senders_ = std::move(senders_);
    fresh.listened_until_ = listened_until_;
    *this = std::move(fresh);
    return RadioCode::ok;
}

RadioCode Radio::start(int mode) {
    if (mode_ != Mode::off)
        return RadioCode::already_started;
    if (mode != 0 && mode != 1)
        return RadioCode::bad_mode;
    mode_ = mode == 0 ? Mode::transmit : Mode::receive;
    received_ = 0;
    return RadioCode::ok;
}

RadioCode Radio::stop() {
    mode_ = Mode::off;
    streams_ = false;
    return RadioCode::ok;
}

RadioCode Radio::set_channel(int channel) {
    if (streams_)
        return RadioCode::streaming;
    if (!is_channel(channel))
        return RadioCode::bad_channel;
    channel_ = channel;
    return RadioCode::ok;
}

RadioCode Radio::set_power(int power) {
    if (streams_)
        return RadioCode::streaming;
    if (!is_power(power))
        return RadioCode::bad_power;
    power_ = power;
    return RadioCode::ok;
}

RadioCode Radio::start_stream() {
    if (mode_ != Mode::transmit)
        return RadioCode::wrong_mode;
    if (streams_)
        return RadioCode::streaming;
    streams_ = true;
    return RadioCode::ok;
}

RadioCode Radio::stop_stream() {
    if (mode_ != Mode::transmit)
        return RadioCode::wrong_mode;
    if (!streams_)
        return RadioCode::not_streaming;
    streams_ = false;
    return RadioCode::ok;
}

RadioCode Radio::get_rx_statistics() {
    return mode_ == Mode::receive ? RadioCode::ok : RadioCode::wrong_mode;
}

RadioCode Radio::reset_rx_statistics() {
    if (mode_ != Mode::receive)
        return RadioCode::wrong_mode;
    received_ = 0;
    return RadioCode::ok;
}

bool Radio::set_traffic(int channel, double packets_per_second, Time now) {
    if (!is_channel(channel) || packets_per_second < 0)
        return false;
    listen_until(now);
    senders_[name_of_traffic(channel)] = {channel, packets_per_second, now};
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
    stop();
}

/** Counts are computed when they are asked for, so nothing wakes for a packet. */
long long Radio::received(Time now) const {
    long long count = received_;
    for (const auto& [name, sender] : senders_) {
        const auto packets_until = [&sender = sender](Time moment) {
            const std::chrono::duration<double> seconds = std::max(moment, sender.since) - sender.since;
            return static_cast<long long>(std::floor(seconds.count() * sender.packets_per_second));
        };
        if (mode_ == Mode::receive && sender.channel == channel_)
            count += packets_until(now) - packets_until(listened_until_);
    }
    return count;
}

double Radio::packets_per_second() const {
    double sum = 0;
    for (const auto& [name, sender] : senders_)
        if (mode_ == Mode::receive && sender.channel == channel_)
            sum += sender.packets_per_second;
    return sum;
}

void Radio::listen_until(Time now) {
    received_ = received(now);
    listened_until_ = now;
}

} // namespace simulator
