#include "model.h"

#include <algorithm>
#include <iterator>

namespace model {

std::string name_of(const State& state, const Spot& spot) {
    const bool tx = is_tx(state);
    const auto set = [&](const char* otherwise) {
        const std::optional<int>& number = number_of(state, spot).set;
        return number ? std::to_string(*number) : otherwise;
    };
    if (spot == "start")
        return !state.start.empty() ? state.start : tx ? "Start TX Test" : "Start RX Test";
    if (spot == "power")
        return set("Set Power");
    if (spot == "channel")
        return set(tx ? "Set Channel" : "11");
    if (spot == "stream")
        return state.stream_button_stops ? "Stop Stream" : "Start Stream";
    if (spot == "stop")
        return tx ? "Stop Test" : "Stop";
    if (spot == "number")
        return std::to_string(*number_of(state, state.popup).shown);
    return spot == "count" ? "Count Received Packets" : spot == "reset" ? "Reset Count" : spot;
}

std::string rendering(const State& state) {
    const auto button = [&state](const Spot& spot) {
        const bool is_chosen = state.page != Page::first && spot == (is_tx(state) ? "TX Test" : "RX Test");
        const std::string text =
            name_of(state, spot) + (is_locked(state, spot) ? "" : "*") + (is_chosen ? " chosen" : "");
        const bool has_focus = spot == state.focus && !state.behind; // if behind, the window in front has it
        return has_focus ? "[" + text + "]" : text;
    };
    std::vector<std::string> items;
    const auto add_row = [&](const Row& row) {
        std::ranges::transform(row, std::back_inserter(items), button);
        if (state.mirrored)
            std::reverse(items.end() - std::ssize(row), items.end());
    };
    if (state.popup == "Exit") {
        items = {"Exit App", "Do you want to exit ?"};
        add_row(exit_popup);
    } else if (in_picker(state)) {
        items = {state.popup == "power" ? "Zigbee TX Power" : "Zigbee TX Channel", button("number")};
    } else {
        items = {"Velmora"}; // spans the screen, so mirroring does not move it
        add_row(header);
        if (state.page == Page::rx_test)
            items.push_back("Received Packets: " + state.packets);
        for (const Spot& spot : content.at(state.page)) {
            if (spot == "power" || spot == "channel")
                items.emplace_back(spot == "power" ? "Power:" : "Channel:");
            items.push_back(button(spot));
        }
    }
    std::string line = state.behind ? "behind:" : "in front:";
    for (const std::string& item : items)
        line += " | " + item;
    return line + (state.mirrored ? " | from the right" : "");
}

} // namespace model
