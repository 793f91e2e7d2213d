#include "place.h"

namespace walk {
namespace {

std::uint64_t put(std::uint64_t value, std::uint64_t mask) { return value * (mask & (~mask + 1)); }
std::uint64_t code(auto value) { return static_cast<std::uint64_t>(value); }

/** 1 to 4 for the lowest, the next, the last but one and the highest number. */
std::uint64_t number_code(const State& state) {
    if (!in_picker(state))
        return 0;
    const auto [lowest, highest] = limits(state);
    const int shown = *picked(state).shown;
    return shown <= lowest + 1 ? code(shown - lowest + 1) : code(shown - highest + 4);
}

} // namespace

std::uint64_t place(const State& state) {
    const bool channel_set = state.tx_channel.set || state.rx_channel.set;
    return put(code(state.page), page) | put(code(state.start), start) | put(code(state.popup), popup) |
           put(code(state.focus), focus) | put(number_code(state), number) |
           put(code(state.stream_button_stops), stream) | put(code(state.mirrored), mirrored) |
           put(code(state.behind), behind) | put(code(state.radio), radio) |
           put(code(state.power.set.has_value()) + 2 * code(channel_set), texts) |
           put(code(state.packets), packets) | put(code(state.exit_popup_made), made) |
           put(code(state.memory) + 4 * code(state.remembered == Spot::power), memory);
}

} // namespace walk
