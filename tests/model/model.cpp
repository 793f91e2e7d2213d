#include "model.h"

#include <algorithm>
#include <utility>

namespace model {
namespace {

using Calls = std::vector<std::string>;

// Arrow keys.

Spot neighbour(const Row& row, const Spot& from, int way) {
    const auto at = std::ranges::find(row, from) - row.begin() + way;
    return at < 0 || at >= std::ssize(row) ? from : row[static_cast<std::size_t>(at)];
}

/** 1 for the key that moves forward in reading order, -1 for backward, 0 for other keys. */
int along(const State& state, const std::string& key) {
    const int way = key == "Right" ? 1 : key == "Left" ? -1 : 0;
    return state.mirrored ? -way : way;
}
int down(const std::string& key) { return key == "Down" ? 1 : key == "Up" ? -1 : 0; }

Spot destination(const State& state, const std::string& key) {
    if (state.focus.empty())
        return "start";
    if (state.popup == "Exit")
        return neighbour(exit_popup, state.focus, along(state, key));
    const bool in_header = has(header, state.focus);
    if (in_header && down(key) == 0)
        return neighbour(header, state.focus, along(state, key));
    Row column = content.at(state.page);
    std::erase_if(column, [&state](const Spot& spot) { return is_locked(state, spot); });
    column.insert(column.begin(), in_header ? state.focus : is_tx(state) ? "TX Test" : "RX Test");
    return neighbour(column, state.focus, down(key));
}

void press_arrow(State& state, const Transition& by) {
    if (in_picker(state)) {
        Number& number = number_of(state, state.popup);
        const int shown = *number.shown + by.times * step_of(state, by.key);
        number.shown = std::clamp(shown, number.lowest, number.highest);
    } else
        for (int time = 0; time < by.times; ++time)
            state.focus = destination(state, by.key);
}

// The radio.

/** The new radio state for each state in which a command is accepted; it is refused in others. */
const std::map<std::string, std::map<Radio, Radio>> rules{
    {"ember_start(0)", {{Radio::off, Radio::transmitting}}},
    {"ember_start(1)", {{Radio::off, Radio::receiving}}},
    {"ember_stop()",
     {{Radio::transmitting, Radio::off}, {Radio::streaming, Radio::off}, {Radio::receiving, Radio::off}}},
    {"ember_start_stream()", {{Radio::transmitting, Radio::streaming}}},
    {"ember_stop_stream()", {{Radio::streaming, Radio::transmitting}}},
    {"ember_set_", {{Radio::transmitting, Radio::transmitting}, {Radio::receiving, Radio::receiving}}},
    {"ember_get_rx_statistics()", {{Radio::receiving, Radio::receiving}}},
    {"ember_reset_rx_statistics()", {{Radio::receiving, Radio::receiving}}}};

/** Sends the radio a command. @return whether the application gets a successful answer. */
bool ask(Outcome& outcome, const Transition& by, const std::string& call) {
    outcome.calls.push_back(call);
    const auto& after = rules.at(call.starts_with("ember_set_") ? "ember_set_" : call);
    const auto next = after.find(outcome.state.radio);
    if (next == after.end() || by.answer == Answer::refused)
        return false;
    outcome.state.radio = next->second;
    return by.answer == Answer::normal;
}

// Pages and popups.

void put_focus(State& state, const Spot& spot) { (state.popup.empty() ? state.focus : state.below) = spot; }

void show_start_page(State& state, bool tx) {
    state.page = tx ? Page::tx_start : Page::rx_start;
    state.start.clear();
    state.stream_button_stops = false;
    state.packets = "?";
    state.power.set = state.tx_channel.set = state.rx_channel.set = std::nullopt;
    put_focus(state, "start");
}

void be_ready(Outcome& outcome, const Transition& by) {
    State& state = outcome.state;
    if (state.page == Page::first)
        return;
    const bool tx = is_tx(state);
    ask(outcome, by, tx ? "ember_start(0)" : "ember_start(1)");
    show_start_page(state, tx);
    state.page = tx ? Page::tx_test : Page::rx_test;
    put_focus(state, tx ? "power" : "channel");
}

void open_popup(State& state, const Spot& button) {
    state.below = state.focus;
    state.popup = button;
    state.focus = in_picker(state) ? "number" : "Cancel";
    if (in_picker(state)) {
        Number& number = number_of(state, button);
        number.shown = number.shown.value_or(number.lowest);
        number.past = Past::none;
    } else
        state.exit_popup_made = true;
}

void close_popup(State& state) {
    state.popup.clear();
    state.focus = std::exchange(state.below, "");
}

void bring_up(Outcome& outcome, const Transition& by) {
    State& state = outcome.state;
    const bool fails = by.missing == "socat";
    state.focus.clear();
    state.radio = Radio::unreachable;
    state.start = fails ? "Failed to start child process" : "Please Wait...";
    std::vector<Number*> numbers{&number_of(state, "channel")};
    if (is_tx(state))
        numbers.push_back(&state.power);
    for (Number* const number : numbers) {
        if (number->is_moved())
            number->past = fails ? Past::kept : Past::forgotten;
        if (!fails)
            number->shown.reset();
    }
    if (by.missing.empty()) {
        state.radio = Radio::off;
        be_ready(outcome, by);
    }
}

void end(Outcome& outcome, const std::string& reason) {
    outcome.ends = true;
    outcome.log["the main loop ends: " + reason] = 1;
}

void press_button(Outcome& outcome, const Transition& by, const Spot& spot) {
    State& state = outcome.state;
    if (spot == "TX Test" || spot == "RX Test") {
        show_start_page(state, spot == "TX Test");
    } else if (spot == "start") {
        bring_up(outcome, by);
    } else if (spot == "Exit" || spot == "power" || spot == "channel") {
        open_popup(state, spot);
    } else if (spot == "Cancel") {
        close_popup(state);
    } else if (spot == "stream") {
        if (ask(outcome, by, state.stream_button_stops ? "ember_stop_stream()" : "ember_start_stream()"))
            state.stream_button_stops = !state.stream_button_stops;
    } else if (spot == "stop") {
        if (ask(outcome, by, "ember_stop()"))
            show_start_page(state, is_tx(state));
    } else if (spot == "count") {
        if (ask(outcome, by, "ember_get_rx_statistics()"))
            state.packets = by.packets;
    } else if (spot == "reset") {
        state.packets = ask(outcome, by, "ember_reset_rx_statistics()") ? "0" : "Reset Failed";
    } else if (spot == "number") {
        Number& number = number_of(state, state.popup);
        if (ask(outcome, by, "ember_set_" + state.popup + "(" + std::to_string(*number.shown) + ")")) {
            number.set = number.shown;
            close_popup(state);
        }
    } else if (spot == "Yes") {
        end(outcome, "the application asked to");
    }
}

void press_key(Outcome& outcome, const Transition& by) {
    State& state = outcome.state;
    if (by.key == "Red") {
        state.behind = false;
    } else if (state.behind) { // another window gets the key
    } else if (by.key == "OK") {
        press_button(outcome, by, Spot(state.focus));
    } else if (by.key != "Back" && by.key != "Exit" && by.key != "Escape") {
        press_arrow(state, by);
    } else if (state.popup.empty()) {
        state.behind = true;
    } else {
        close_popup(state);
    }
}

bool can_be_used(const State& state, const Spot& spot) {
    return has(exit_popup, spot) ? state.popup == "Exit" : state.popup.empty() && !is_locked(state, spot);
}

} // namespace

int step_of(const State& state, const std::string& key) { return along(state, key) - down(key); }

Outcome follow(const State& state, const Transition& by) {
    Outcome outcome{state, {}, false, by.log};
    if (by.act == Act::press || by.act == Act::hold) {
        press_key(outcome, by);
    } else if (by.act == Act::activate && can_be_used(state, by.key)) {
        outcome.state.focus = by.key;
        press_button(outcome, by, by.key);
    } else if (by.act == Act::language) {
        outcome.state.mirrored = !state.mirrored;
    } else if (by.act == Act::replace || (by.act == Act::event && by.key == "('ready',)")) {
        if (by.act == Act::replace)
            outcome.state.radio = Radio::off;
        be_ready(outcome, by);
    }
    if (by.act >= Act::terminate)
        end(outcome, by.key);
    if (outcome.ends) {
        outcome.state = State{};
        outcome.state.mirrored = state.mirrored;
    }
    return outcome;
}

} // namespace model
