#include "state.h"

#include <algorithm>
#include <iterator>

namespace walk {
namespace {

constexpr Limits power_limits{0, 20};
constexpr Limits channel_limits{11, 26};

bool is_start(const State& state) { return state.page == Page::tx_start || state.page == Page::rx_start; }

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

bool is_tx(const State& state) { return state.page == Page::tx_start || state.page == Page::tx_test; }
bool in_picker(const State& state) { return state.popup == Popup::power || state.popup == Popup::channel; }

const Number& channel_of(const State& state) { return is_tx(state) ? state.tx_channel : state.rx_channel; }

const Number& picked(const State& state) {
    return state.popup == Popup::power ? state.power : channel_of(state);
}
Number& picked(State& state) {
    return state.popup == Popup::power ? state.power : is_tx(state) ? state.tx_channel : state.rx_channel;
}
Limits limits(const State& state) { return state.popup == Popup::power ? power_limits : channel_limits; }

bool remembers(const State& state, Spot button) {
    if (button == Spot::power)
        return is_tx(state) && state.power.shown.value_or(0) > power_limits.lowest;
    return button == Spot::channel && channel_of(state).shown.value_or(0) > channel_limits.lowest;
}

std::vector<Spot> header() { return {Spot::tx_tab, Spot::rx_tab, Spot::exit}; }

std::vector<Spot> content(const State& state) {
    if (is_start(state))
        return {Spot::start};
    if (state.page == Page::tx_test)
        return {Spot::power, Spot::channel, Spot::stream, Spot::stop};
    if (state.page == Page::rx_test)
        return {Spot::count, Spot::reset, Spot::channel, Spot::stop};
    return {};
}

std::vector<Spot> buttons(const State& state) {
    std::vector<Spot> all = header();
    std::ranges::copy(content(state), std::back_inserter(all));
    if (state.exit_popup_made)
        all.insert(all.end(), {Spot::yes, Spot::cancel});
    return all;
}

bool is_barred(const State& state, Spot spot) {
    return state.page == Page::tx_test && state.stream_button_stops &&
           (spot == Spot::power || spot == Spot::channel);
}

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
