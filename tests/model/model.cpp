#include "model.h"

#include <algorithm>
#include <set>

namespace model {
namespace {

// Arrow keys.

/** 1 for the key that moves forward in reading order, -1 for backward, 0 for other keys. */
int along(const State& state, const std::string& key) {
    const int offset = key == "Right" ? 1 : key == "Left" ? -1 : 0;
    return state.mirrored ? -offset : offset;
}
int down(const std::string& key) { return key == "Down" ? 1 : key == "Up" ? -1 : 0; }

std::string neighbour(const Row& row, const std::string& from, int offset) {
    const auto index = std::ranges::find(row, from) - row.begin() + offset;
    return row.begin()[std::clamp(index, std::ptrdiff_t{0}, std::ssize(row) - 1)];
}

std::string destination(const State& state, const std::string& key) {
    if (state.focus.empty())
        return "start";
    const bool in_header = has(header, state.focus);
    if (in_header && down(key) == 0)
        return neighbour(header, state.focus, along(state, key));
    Row column = content.at(state.page);
    std::erase_if(column, [&state](const auto& button) { return is_locked(state, button); });
    column.insert(column.begin(), in_header ? state.focus : is_tx(state) ? "TX Test" : "RX Test");
    return neighbour(column, state.focus, down(key));
}

void press_arrow(State& state, const std::string& key) {
    if (in_picker(state)) {
        Picker& picker = picker_of(state, state.popup);
        const int next = picker.number + along(state, key) - down(key);
        picker.number = std::clamp(next, picker.lowest, picker.highest);
    } else if (state.popup == "Exit") {
        state.popup_focus = neighbour(exit_popup, state.popup_focus, along(state, key));
    } else {
        state.focus = destination(state, key);
    }
}

// The radio.

/** Sends a command, which the radio accepts only in some states. @return whether the application sees a success. */
bool ask(Outcome& state, const Transition& by, const std::string& call, const std::set<Radio>& accepting,
         Radio next) {
    state.calls.push_back(call);
    if (!accepting.contains(state.radio) || by.answer == Answer::refused)
        return false;
    state.radio = next;
    return by.answer == Answer::normal;
}

// Pages and popups.

void show_start_page(State& state, bool tx) {
    state.page = tx ? Page::tx_start : Page::rx_start;
    state.start.clear();
    state.stream_button_stops = false;
    state.packets = "?";
    state.power.set = state.tx_channel.set = state.rx_channel.set = std::nullopt;
    state.focus = "start";
}

void be_ready(Outcome& state, const Transition& by) {
    if (state.page == Page::first)
        return;
    const bool tx = is_tx(state);
    ask(state, by, tx ? "ember_start(0)" : "ember_start(1)", {Radio::off},
        tx ? Radio::transmitting : Radio::receiving);
    show_start_page(state, tx);
    state.page = tx ? Page::tx_test : Page::rx_test;
    state.focus = tx ? "power" : "channel";
}

void bring_up(Outcome& state, const Transition& by) {
    const bool fails = by.behaviour == "without socat";
    state.focus.clear();
    state.radio = Radio::unreachable;
    state.start = fails ? "Failed to start child process" : "Please Wait...";
    for (const char* const button : {"power", "channel"})
        if (Picker& picker = picker_of(state, button); picker.number > picker.lowest) {
            picker.restart = fails ? "kept it" : "reset it";
            if (!fails)
                picker.number = picker.lowest;
        }
    if (by.behaviour == "normal") {
        state.radio = Radio::off;
        be_ready(state, by);
    }
}

/** The application exits and is restarted. */
void end(Outcome& state, const std::string& reason) {
    static_cast<State&>(state) = {.mirrored = state.mirrored};
    state.ends = true;
    state.log["the main loop ends: " + reason] = 1;
}

void press_button(Outcome& state, const Transition& by, const std::string& button) {
    using enum Radio;
    if (button == "TX Test" || button == "RX Test") {
        show_start_page(state, button == "TX Test");
    } else if (button == "start") {
        bring_up(state, by);
    } else if (button == "Exit") {
        state.popup = button;
        state.popup_focus = "Cancel";
        state.exit_popup_made = true;
    } else if (has({"power", "channel"}, button)) {
        state.popup = button;
        state.popup_focus = "number";
        picker_of(state, button).restart.clear();
    } else if (button == "Cancel") {
        state.popup.clear();
    } else if (button == "stream") {
        if (state.stream_button_stops ? ask(state, by, "ember_stop_stream()", {streaming}, transmitting)
                                      : ask(state, by, "ember_start_stream()", {transmitting}, streaming))
            state.stream_button_stops = !state.stream_button_stops;
    } else if (button == "Stop Test" || button == "Stop") {
        if (ask(state, by, "ember_stop()", {transmitting, streaming, receiving}, off))
            show_start_page(state, is_tx(state));
    } else if (button == "Count Received Packets") {
        if (ask(state, by, "ember_get_rx_statistics()", {receiving}, receiving))
            state.packets = by.packets;
    } else if (button == "Reset Count") {
        const bool succeeds = ask(state, by, "ember_reset_rx_statistics()", {receiving}, receiving);
        state.packets = succeeds ? "0" : "Reset Failed";
    } else if (button == "number") {
        Picker& picker = picker_of(state, state.popup);
        const std::string call = "ember_set_" + state.popup + "(" + std::to_string(picker.number) + ")";
        if (ask(state, by, call, {transmitting, receiving}, state.radio)) {
            picker.set = picker.number;
            state.popup.clear();
        }
    } else if (button == "Yes") {
        end(state, "the application asked to");
    }
}

void press_key(Outcome& state, const Transition& by) {
    if (by.key == "Red") {
        state.behind = false;
    } else if (state.behind) { // another window gets the key
    } else if (by.key == "OK") {
        press_button(state, by, std::string(focus_of(state)));
    } else if (by.key != "Back" && by.key != "Exit" && by.key != "Escape") {
        press_arrow(state, by.key);
    } else if (state.popup.empty()) {
        state.behind = true;
    } else {
        state.popup.clear();
    }
}

} // namespace

Outcome follow(const State& from, const Transition& by) {
    Outcome state{from, {}, false, by.log};
    const bool is_usable =
        has(exit_popup, by.key) ? from.popup == "Exit" : from.popup.empty() && !is_locked(from, by.key);
    if (by.act == Act::press || by.act == Act::hold) {
        for (int time = 0; time < by.times; ++time)
            press_key(state, by);
    } else if (by.act == Act::activate && is_usable) {
        if (state.popup.empty())
            state.focus = by.key;
        press_button(state, by, by.key);
    } else if (by.act == Act::change_language) {
        state.mirrored = !state.mirrored;
    } else if (by.act == Act::restart_service) {
        state.radio = Radio::off;
        be_ready(state, by);
    } else if (by.act == Act::event && by.key == "('ready',)") {
        be_ready(state, by);
    } else if (by.act >= Act::terminate) {
        end(state, by.key);
    }
    return state;
}

} // namespace model
