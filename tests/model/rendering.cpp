#include "model.h"

#include "base/strings.h"

#include <algorithm>

namespace model {
namespace {

/** Returns a button's or picker's text and states. */
std::string described(const State& state, const std::string& widget) {
    const bool is_chosen = state.page != Page::first && widget == (is_tx(state) ? "TX Test" : "RX Test");
    const std::string text =
        text_of(state, widget) + (is_locked(state, widget) ? "" : "*") + (is_chosen ? " chosen" : "");
    const bool has_focus = widget == focus_of(state) && !state.behind; // else the front window has it
    return has_focus ? "[" + text + "]" : text;
}

} // namespace

std::string text_of(const State& state, const std::string& widget) {
    const bool tx = is_tx(state);
    if (widget == "start")
        return !state.start.empty() ? state.start : tx ? "Start TX Test" : "Start RX Test";
    if (widget == "power")
        return state.power.text_or("Set Power");
    if (widget == "channel")
        return tx ? state.tx_channel.text_or("Set Channel") : state.rx_channel.text_or("11");
    if (widget == "stream")
        return state.stream_button_stops ? "Stop Stream" : "Start Stream";
    return widget == "number" ? std::to_string(picker_of(state, state.popup).number) : widget;
}

std::string rendering(const State& state) {
    std::vector<std::string> items;
    const auto add_row = [&](Row row) {
        if (state.mirrored)
            std::ranges::reverse(row);
        for (const std::string& button : row)
            items.push_back(described(state, button));
    };
    if (state.popup == "Exit") {
        items = {"Exit App", "Do you want to exit ?"};
        add_row(exit_popup);
    } else if (in_picker(state)) {
        items = {state.popup == "power" ? "Zigbee TX Power" : "Zigbee TX Channel",
                 described(state, "number")};
    } else {
        items = {"Velmora"}; // spans the screen, so mirroring does not move it
        add_row(header);
        if (state.page == Page::rx_test)
            items.push_back("Received Packets: " + state.packets);
        for (const std::string& widget : content.at(state.page)) {
            if (widget == "power" || widget == "channel")
                items.emplace_back(widget == "power" ? "Power:" : "Channel:");
            items.push_back(described(state, widget));
        }
    }
    return (state.behind ? "behind: | " : "in front: | ") + simulator::joined(items, " | ") +
           (state.mirrored ? " | from the right" : "");
}

} // namespace model
