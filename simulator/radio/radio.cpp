#include "radio.h"

#include <algorithm>
#include <array>
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
    switch (mode) {
    case Radio::Mode::transmit:
        return "tx";
    case Radio::Mode::receive:
        return "rx";
    case Radio::Mode::off:
        break;
    }
    return "off";
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
    struct Plain {
        const char* command;
        RadioCode (Radio::*perform)();
    };
    struct WithArgument {
        const char* command;
        RadioCode (Radio::*perform)(int);
    };
    static constexpr auto plain =
        std::to_array<Plain>({{"stop", &Radio::stop},
                              {"start_stream", &Radio::start_stream},
                              {"stop_stream", &Radio::stop_stream},
                              {"get_rx_statistics", &Radio::get_rx_statistics},
                              {"reset_rx_statistics", &Radio::reset_rx_statistics}});
    static constexpr auto with_argument =
        std::to_array<WithArgument>({{"set_channel", &Radio::set_channel}, {"set_power", &Radio::set_power}});
    const auto is_it = [&](const auto& entry) { return request.command == entry.command; };

    if (request.command == "reset")
        return reset();
    if (request.command == "start" && request.argument)
        return start(*request.argument);
    if (mode_ == Mode::off)
        return RadioCode::not_started;
    if (const auto* found = std::find_if(std::begin(plain), std::end(plain), is_it);
        found != std::end(plain)) {
        return (this->*found->perform)();
    }
    const auto* found = std::find_if(std::begin(with_argument), std::end(with_argument), is_it);
    if (found == std::end(with_argument) || !request.argument)
        return RadioCode::bad_request;
    return (this->*found->perform)(*request.argument);
}

RadioCode Radio::reset() {
    Radio fresh;
    fresh.traffic_ = std::move(traffic_);
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
    traffic_.add(name_of_traffic(channel), {channel, packets_per_second, now});
    return true;
}

bool Radio::add_stream(const std::string& name, int channel, int power, Time now) {
    if (!is_channel(channel) || !is_power(power))
        return false;
    listen_until(now);
    const auto rate = stream_packets_per_second - lost_packets_per_power * (highest_power - power);
    traffic_.add(name, {channel, rate, now});
    return true;
}

void Radio::remove_stream(const std::string& name, Time now) {
    listen_until(now);
    traffic_.remove(name);
}

void Radio::lose_line(Time now) {
    listen_until(now);
    stop();
}

long long Radio::received(Time now) const {
    return received_ + (mode_ == Mode::receive ? traffic_.packets(channel_, listened_until_, now) : 0);
}

double Radio::packets_per_second() const {
    return mode_ == Mode::receive ? traffic_.packets_per_second(channel_) : 0;
}

void Radio::listen_until(Time now) {
    received_ = received(now);
    listened_until_ = now;
}

} // namespace simulator
