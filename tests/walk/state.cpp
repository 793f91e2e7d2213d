#include "state.h"

#include <algorithm>
#include <iterator>

namespace walk {
namespace {

constexpr Limits power_limits{0, 20};
constexpr Limits channel_limits{11, 26};

bool is_start(const State& state) { return state.page == Page::tx_start || state.page == Page::rx_start; }

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

} // namespace walk
