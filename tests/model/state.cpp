#include "state.h"

#include <algorithm>

namespace model {

bool is_tx(const State& state) { return state.page == Page::tx_start || state.page == Page::tx_test; }
bool in_picker(const State& state) { return state.popup == "power" || state.popup == "channel"; }

std::vector<Spot> header() { return {"TX Test", "RX Test", "Exit"}; }

std::vector<Spot> content(const State& state) {
    switch (state.page) {
    case Page::first:
        return {};
    case Page::tx_test:
        return {"power", "channel", "stream", "stop"};
    case Page::rx_test:
        return {"count", "reset", "channel", "stop"};
    default:
        return {"start"};
    }
}

bool has_button(const State& state, const Spot& button) {
    std::vector<Spot> all = content(state);
    std::ranges::copy(header(), std::back_inserter(all));
    if (state.exit_popup_made)
        all.insert(all.end(), {"Yes", "Cancel"});
    return std::ranges::find(all, button) != all.end();
}

bool is_barred(const State& state, const Spot& spot) {
    return state.stream_button_stops && state.page == Page::tx_test && (spot == "power" || spot == "channel");
}

} // namespace model
