#include "appearance.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <vector>

namespace walk {
namespace {

std::string text_of(const std::optional<int>& number, const std::string& otherwise) {
    return number ? std::to_string(*number) : otherwise;
}

std::string start_text(const State& state) {
    if (state.start != Start::fresh)
        return state.start == Start::waiting ? "Please Wait..." : "Failed to start child process";
    return is_tx(state) ? "Start TX Test" : "Start RX Test";
}

std::string label_of(Spot spot) {
    return spot == Spot::power ? "Power:" : spot == Spot::channel ? "Channel:" : "";
}

std::string packets_text(const State& state, const std::string& packets) {
    const std::array<std::string, 4> texts{"?", "0", packets, "Reset Failed"};
    return "Received Packets: " + texts.at(static_cast<std::size_t>(state.packets));
}

} // namespace

std::string name_of(const State& state, Spot spot) {
    static const std::map<Spot, std::string> always{
        {Spot::none, ""},          {Spot::tx_tab, "TX Test"},   {Spot::exit, "Exit"},
        {Spot::rx_tab, "RX Test"}, {Spot::yes, "Yes"},          {Spot::count, "Count Received Packets"},
        {Spot::cancel, "Cancel"},  {Spot::reset, "Reset Count"}};
    switch (spot) {
    case Spot::start:
        return start_text(state);
    case Spot::power:
        return text_of(state.power.set, "Set Power");
    case Spot::channel:
        return text_of(channel_of(state).set, is_tx(state) ? "Set Channel" : "11");
    case Spot::stream:
        return state.stream_button_stops ? "Stop Stream" : "Start Stream";
    case Spot::stop:
        return is_tx(state) ? "Stop Test" : "Stop";
    case Spot::number:
        return std::to_string(*picked(state).shown);
    default:
        return always.at(spot);
    }
}

std::string appearance(const State& state, const std::string& packets) {
    const auto button = [&state](Spot spot) {
        const bool is_chosen =
            state.page != Page::first && spot == (is_tx(state) ? Spot::tx_tab : Spot::rx_tab);
        const std::string text =
            name_of(state, spot) + (is_barred(state, spot) ? "" : "*") + (is_chosen ? " chosen" : "");
        const bool has_focus = spot == state.focus && !state.behind; // behind it the front window's has it
        return has_focus ? "[" + text + "]" : text;
    };
    std::vector<std::string> items;
    const auto add_row = [&](std::vector<std::string> row) {
        if (state.mirrored)
            std::ranges::reverse(row);
        std::ranges::copy(row, std::back_inserter(items));
    };
    if (state.popup == Popup::exit) {
        items = {"Exit App", "Do you want to exit ?"};
        add_row({button(Spot::yes), button(Spot::cancel)});
    } else if (in_picker(state)) {
        items = {state.popup == Popup::power ? "Zigbee TX Power" : "Zigbee TX Channel", button(Spot::number)};
    } else {
        items = {"Velmora"}; // as wide as the screen in both directions
        add_row({button(Spot::tx_tab), button(Spot::rx_tab), button(Spot::exit)});
        if (state.page == Page::rx_test)
            items.push_back(packets_text(state, packets));
        for (const Spot spot : content(state)) {
            const std::string label = label_of(spot);
            if (!label.empty())
                items.push_back(label);
            items.push_back(button(spot));
        }
    }
    std::string line = state.behind ? "behind:" : "in front:";
    for (const std::string& item : items)
        line += " | " + item;
    return line + (state.mirrored ? " | from the right" : "");
}

} // namespace walk
