#include "radio.h"

#include <algorithm>

namespace station {
namespace {

bool is_channel(int channel) { return channel >= Radio::lowest_channel && channel <= Radio::highest_channel; }

} // namespace

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
    fresh.traffic_ = traffic_;
    fresh.listened_until_ = listened_until_;
    *this = fresh;
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
    if (power < 0 || power > highest_power)
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

bool Radio::set_traffic(int channel, int packets_per_second, Time now) {
    if (!is_channel(channel) || packets_per_second < 0)
        return false;
    listen_until(now);
    traffic_.at(static_cast<std::size_t>(channel - lowest_channel)) = packets_per_second;
    return true;
}

int Radio::traffic_here() const {
    return mode_ == Mode::receive ? traffic_.at(static_cast<std::size_t>(channel_ - lowest_channel)) : 0;
}

long long Radio::received(Time now) const {
    const std::chrono::duration<double> listened = now - listened_until_;
    return static_cast<long long>(received_ + listened.count() * traffic_here());
}

void Radio::listen_until(Time now) {
    const std::chrono::duration<double> listened = now - listened_until_;
    received_ += listened.count() * traffic_here();
    listened_until_ = now;
}

} // namespace station
