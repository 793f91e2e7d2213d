#include "model.h"

#include <algorithm>

namespace walk {
namespace {

using Calls = std::vector<std::string>;

bool in_header(Spot spot) {
    const std::vector<Spot> all = header();
    return std::ranges::find(all, spot) != all.end();
}

// Where an arrow leads.

Spot neighbour(const std::vector<Spot>& row, Spot from, int way) {
    const auto at = std::ranges::find(row, from) - row.begin() + way;
    return at < 0 || at >= static_cast<std::ptrdiff_t>(row.size()) ? from : row[static_cast<std::size_t>(at)];
}

/** 1 for the key that leads on in reading order, -1 for the one that leads back, 0 for others. */
int along(const State& state, const std::string& key) {
    const int way = key == "Right" ? 1 : key == "Left" ? -1 : 0;
    return state.mirrored ? -way : way;
}
int down(const std::string& key) { return key == "Down" ? 1 : key == "Up" ? -1 : 0; }

Spot destination(const State& state, const std::string& key) {
    if (state.focus == Spot::none)
        return Spot::start;
    if (state.popup == Popup::exit)
        return neighbour({Spot::yes, Spot::cancel}, state.focus, along(state, key));
    if (in_header(state.focus) && down(key) == 0)
        return neighbour(header(), state.focus, along(state, key));
    std::vector<Spot> column = content(state);
    std::erase_if(column, [&state](Spot spot) { return is_barred(state, spot); });
    if (in_header(state.focus))
        return down(key) < 0 || column.empty() ? state.focus : column.front();
    if (down(key) < 0 && state.focus == column.front())
        return is_tx(state) ? Spot::tx_tab : Spot::rx_tab;
    return neighbour(column, state.focus, down(key));
}

void arrow(State& state, const std::string& key, int times) {
    if (!in_picker(state)) {
        for (int time = 0; time < times; ++time)
            state.focus = destination(state, key);
        return;
    }
    const auto [lowest, highest] = limits(state);
    int& shown = *picked(state).shown;
    shown = std::clamp(shown + times * steps(state, key), lowest, highest);
}

// The radio.

/** What the radio does after a method; nothing when it refuses. */
std::optional<Radio> obeyed(Radio radio, const std::string& method, int argument) {
    const bool runs = radio != Radio::unreachable && radio != Radio::off;
    if (method == "ember_start" && radio == Radio::off)
        return argument == 0 ? Radio::transmitting : Radio::receiving;
    if (method == "ember_stop" && runs)
        return Radio::off;
    if (method == "ember_start_stream" && radio == Radio::transmitting)
        return Radio::streaming;
    if (method == "ember_stop_stream" && radio == Radio::streaming)
        return Radio::transmitting;
    const bool may_set = method.starts_with("ember_set_") && runs && radio != Radio::streaming;
    const bool may_count = method.ends_with("_rx_statistics") && radio == Radio::receiving;
    return may_set || may_count ? std::optional(radio) : std::nullopt;
}

bool ask(State& state, Calls& calls, Answer answer, const std::string& method,
         std::optional<int> argument = std::nullopt) {
    calls.push_back(method + "(" + (argument ? std::to_string(*argument) : "") + ")");
    const auto after = obeyed(state.radio, method, argument.value_or(0));
    if (answer != Answer::refused)
        state.radio = after.value_or(state.radio);
    return after && answer != Answer::refused && answer != Answer::lost;
}

// Pages and popups.

void put_focus(State& state, Spot spot) { (state.popup == Popup::none ? state.focus : state.below) = spot; }

void show_start_page(State& state, bool tx) {
    if (tx != is_tx(state))
        state.memory = Memory::none;
    state.page = tx ? Page::tx_start : Page::rx_start;
    state.start = Start::fresh;
    state.stream_button_stops = false;
    state.packets = Packets::unknown;
    state.power.set = state.tx_channel.set = state.rx_channel.set = std::nullopt;
    put_focus(state, Spot::start);
}

void be_ready(State& state, Calls& calls, Answer answer = Answer::normal) {
    if (state.page == Page::first)
        return;
    const bool tx = is_tx(state);
    ask(state, calls, answer, "ember_start", tx ? 0 : 1);
    show_start_page(state, tx);
    state.page = tx ? Page::tx_test : Page::rx_test;
    put_focus(state, tx ? Spot::power : Spot::channel);
}

void open(State& state, Popup popup, Spot focus) {
    state.below = state.focus;
    state.popup = popup;
    state.focus = focus;
    if (focus == Spot::number && !picked(state).shown)
        picked(state).shown = limits(state).lowest;
    if (focus == Spot::number && state.below == state.remembered)
        state.memory = Memory::none;
    state.exit_popup_made = state.exit_popup_made || popup == Popup::exit;
}

void close(State& state) {
    state.popup = Popup::none;
    state.focus = state.below;
    state.below = Spot::none;
}

void bring_up(State& state, Calls& calls, BringUp how) {
    state.focus = Spot::none;
    state.radio = Radio::unreachable;
    state.start = how == BringUp::no_relay ? Start::failed : Start::waiting;
    const bool forgets = how != BringUp::no_relay;
    if (remembers(state, state.remembered))
        state.memory = forgets ? Memory::dropped_by_a_start : Memory::kept_by_a_failed_start;
    if (!forgets)
        return;
    if (is_tx(state))
        state.power.shown = state.tx_channel.shown = std::nullopt;
    else
        state.rx_channel.shown = std::nullopt;
    if (how == BringUp::silent)
        return;
    state.radio = Radio::off;
    be_ready(state, calls);
}

/** OK in a picker. */
void choose(State& state, Calls& calls, Answer answer) {
    Number& number = picked(state);
    const char* const method = state.popup == Popup::power ? "ember_set_power" : "ember_set_channel";
    if (!ask(state, calls, answer, method, *number.shown))
        return;
    number.set = number.shown;
    close(state);
}

void press_button(State& state, Calls& calls, Spot spot, const Transition& by) {
    switch (spot) {
    case Spot::tx_tab:
    case Spot::rx_tab:
        return show_start_page(state, spot == Spot::tx_tab);
    case Spot::exit:
        return open(state, Popup::exit, Spot::cancel);
    case Spot::start:
        return bring_up(state, calls, by.bring_up);
    case Spot::power:
        return open(state, Popup::power, Spot::number);
    case Spot::channel:
        return open(state, Popup::channel, Spot::number);
    case Spot::stream:
        if (ask(state, calls, by.answer,
                state.stream_button_stops ? "ember_stop_stream" : "ember_start_stream"))
            state.stream_button_stops = !state.stream_button_stops;
        return;
    case Spot::stop:
        if (ask(state, calls, by.answer, "ember_stop"))
            show_start_page(state, is_tx(state));
        return;
    case Spot::count:
        if (ask(state, calls, by.answer, "ember_get_rx_statistics"))
            state.packets = Packets::some;
        return;
    case Spot::reset:
        state.packets =
            ask(state, calls, by.answer, "ember_reset_rx_statistics") ? Packets::zero : Packets::reset_failed;
        return;
    case Spot::number:
        return choose(state, calls, by.answer);
    case Spot::cancel:
        return close(state);
    case Spot::yes:
    case Spot::none:
        return;
    }
}

void press_key(Outcome& outcome, const Transition& by) {
    State& state = outcome.state;
    if (by.key == "Red") {
        state.behind = false;
    } else if (state.behind) { // another window gets the key
    } else if (by.key == "Back" || by.key == "Exit" || by.key == "Escape") {
        if (state.popup == Popup::none)
            state.behind = true;
        else
            close(state);
    } else if (by.key == "OK") {
        outcome.ends = state.focus == Spot::yes;
        press_button(state, outcome.calls, state.focus, by);
    } else {
        arrow(state, by.key, by.times);
    }
}

bool can_be_used(const State& state, Spot spot) {
    const bool in_popup = spot == Spot::yes || spot == Spot::cancel;
    return in_popup ? state.popup == Popup::exit : state.popup == Popup::none && !is_barred(state, spot);
}

void activate(Outcome& outcome, const Transition& by) {
    State& state = outcome.state;
    if (!can_be_used(state, by.spot))
        return;
    outcome.ends = by.spot == Spot::yes;
    state.focus = by.spot;
    press_button(state, outcome.calls, by.spot, by);
}

/** Of two numbers the first one counts. */
void follow_memory(State& state) {
    if (state.memory > Memory::kept)
        return;
    if (!remembers(state, state.remembered))
        state.remembered = remembers(state, Spot::power) ? Spot::power : Spot::channel;
    state.memory = remembers(state, state.remembered) ? Memory::kept : Memory::none;
}

} // namespace

int steps(const State& state, const std::string& key) { return along(state, key) - down(key); }

Outcome follow(const State& state, const Transition& transition) {
    const Act act = transition.act;
    Outcome outcome{state, {}, act >= Act::terminate};
    if (act == Act::press || act == Act::hold)
        press_key(outcome, transition);
    else if (act == Act::activate)
        activate(outcome, transition);
    else if (act == Act::event && transition.key == "ready")
        be_ready(outcome.state, outcome.calls, transition.answer);
    else if (act == Act::language)
        outcome.state.mirrored = !state.mirrored;
    follow_memory(outcome.state);
    if (outcome.ends) {
        outcome.state = State{};
        outcome.state.mirrored = state.mirrored;
    }
    return outcome;
}

} // namespace walk
