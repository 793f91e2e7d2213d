#include "traffic.h"

#include <cmath>

namespace simulator {
namespace {

long long packets_until(const Sender& sender, Sender::Time moment) {
    if (moment <= sender.since)
        return 0;
    const std::chrono::duration<double> seconds = moment - sender.since;
    return static_cast<long long>(std::floor(seconds.count() * sender.packets_per_second));
}

} // namespace

long long Traffic::packets(int channel, Sender::Time after, Sender::Time until) const {
    long long count = 0;
    for (const auto& [name, sender] : senders_) {
        if (sender.channel == channel)
            count += packets_until(sender, until) - packets_until(sender, after);
    }
    return count;
}

double Traffic::packets_per_second(int channel) const {
    double sum = 0;
    for (const auto& [name, sender] : senders_) {
        if (sender.channel == channel)
            sum += sender.packets_per_second;
    }
    return sum;
}

} // namespace simulator
