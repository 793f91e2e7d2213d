#include "model.h"

#include <algorithm>
#include <array>

namespace walk {
namespace {

using Calls = std::vector<std::string>;

struct Limits {
    int lowest;
    int highest;
};
constexpr Limits power_limits{0, 20};
constexpr Limits channel_limits{11, 26};

bool is_tx(const State& state) { return state.page == Page::tx_start || state.page == Page::tx_test; }
bool is_start(const State& state) { return state.page == Page::tx_start || state.page == Page::rx_start; }
bool in_picker(const State& state) { return state.popup == Popup::power || state.popup == Popup::channel; }

Number& channel_of(State& state) { return is_tx(state) ? state.tx_channel : state.rx_channel; }
const Number& channel_of(const State& state) { return is_tx(state) ? state.tx_channel : state.rx_channel; }

Number& picked(State& state) { return state.popup == Popup::power ? state.power : channel_of(state); }
const Number& picked(const State& state) {
    return state.popup == Popup::power ? state.power : channel_of(state);
}
Limits limits(const State& state) { return state.popup == Popup::power ? power_limits : channel_limits; }

/** What the content area holds, from the top. */
std::vector<Spot> content(const State& state) {
    if (is_start(state))
        return {Spot::start};
    if (state.page == Page::tx_test)
        return {Spot::power, Spot::channel, Spot::stream, Spot::stop};
    if (state.page == Page::rx_test)
        return {Spot::count, Spot::reset, Spot::channel, Spot::stop};
    return {};
}

constexpr std::array header{Spot::tx_tab, Spot::rx_tab, Spot::exit};
bool is_header(Spot spot) { return std::ranges::find(header, spot) != header.end(); }

bool is_barred(const State& state, Spot spot) {
    return state.page == Page::tx_test && state.stream_button_stops &&
           (spot == Spot::power || spot == Spot::channel);
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
    if (is_header(state.focus) && down(key) == 0)
        return neighbour({header.begin(), header.end()}, state.focus, along(state, key));
    std::vector<Spot> column = content(state);
    std::erase_if(column, [&state](Spot spot) { return is_barred(state, spot); });
    if (is_header(state.focus) && (down(key) < 0 || column.empty()))
        return state.focus;
    if (is_header(state.focus)) // nothing is straight below the exit button
        return state.focus == Spot::exit ? column.back() : column.front();
    if (down(key) < 0 && state.focus == column.front())
        return is_tx(state) ? Spot::tx_tab : Spot::rx_tab;
    return neighbour(column, state.focus, down(key));
}

int steps(const State& state, const std::string& key) { return along(state, key) - down(key); }

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

/** Of the numbers between the limits only those beside a limit are stopped at. */
bool stops_well(const State& state, const std::string& key) {
    if (!in_picker(state))
        return true;
    const auto [lowest, highest] = limits(state);
    const int next = std::clamp(*picked(state).shown + steps(state, key), lowest, highest);
    return next <= lowest + 1 || next >= highest - 1;
}

// The radio.

bool radio_obeys(Radio& radio, const std::string& method, int argument) {
    const bool runs = radio != Radio::unreachable && radio != Radio::off;
    if (method == "ember_start" && radio == Radio::off) {
        radio = argument == 0 ? Radio::transmitting : Radio::receiving;
        return true;
    }
    if (method == "ember_stop" && runs) {
        radio = Radio::off;
        return true;
    }
    if (method == "ember_start_stream" && radio == Radio::transmitting) {
        radio = Radio::streaming;
        return true;
    }
    if (method == "ember_stop_stream" && radio == Radio::streaming) {
        radio = Radio::transmitting;
        return true;
    }
    if (method == "ember_set_power" || method == "ember_set_channel")
        return runs && radio != Radio::streaming;
    return method.ends_with("_rx_statistics") && radio == Radio::receiving;
}

bool ask(State& state, Calls& calls, Answer answer, const std::string& method,
         std::optional<int> argument = std::nullopt) {
    calls.push_back(method + "(" + (argument ? std::to_string(*argument) : "") + ")");
    const bool reaches = answer == Answer::normal || answer == Answer::late;
    return reaches && radio_obeys(state.radio, method, argument.value_or(0));
}

// Pages and popups.

void put_focus(State& state, Spot spot) { (state.popup == Popup::none ? state.focus : state.below) = spot; }

void show_start_page(State& state, bool tx) {
    state.page = tx ? Page::tx_start : Page::rx_start;
    state.start = Start::fresh;
    state.stream_button_stops = false;
    state.packets = Packets::unknown;
    state.power.set = state.tx_channel.set = state.rx_channel.set = std::nullopt;
    put_focus(state, Spot::start);
}

void be_ready(State& state, Calls& calls) {
    if (state.page == Page::first)
        return;
    const bool tx = is_tx(state);
    ask(state, calls, Answer::normal, "ember_start", tx ? 0 : 1);
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
    if (how == BringUp::no_relay)
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
    } else if (by.key == "Back" || by.key == "Exit") {
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

} // namespace

Outcome follow(const State& state, const Transition& transition) {
    Outcome outcome{state, {}, false};
    switch (transition.act) {
    case Act::press:
    case Act::hold:
        press_key(outcome, transition);
        break;
    case Act::activate:
        activate(outcome, transition);
        break;
    case Act::event:
        if (transition.key == "ready")
            be_ready(outcome.state, outcome.calls);
        break;
    case Act::language:
        outcome.state.mirrored = !state.mirrored;
        break;
    case Act::bad_event:
    case Act::launch:
        break;
    case Act::terminate:
    case Act::close:
        outcome.ends = true;
        break;
    }
    if (outcome.ends) {
        outcome.state = State{};
        outcome.state.mirrored = state.mirrored;
    }
    return outcome;
}

// What makes one place another.

namespace {

enum Grain : std::uint64_t {
    page = 0x7,
    start = 0x18,
    waits = 0x8, // no other place when the start has failed, which takes three seconds
    popup = 0x60,
    focus = 0x780,
    number = 0x3800,
    stream = 0x4000,
    mirrored = 0x8000,
    behind = 0x10000,
    radio = 0xE0000,
    texts = 0x700000,
    packets = 0x1800000,
    made = 0x2000000
};

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
           put(code(state.packets), packets) | put(code(state.exit_popup_made), made);
}

// What can be read.

std::vector<Spot> buttons(const State& state) {
    std::vector<Spot> all(header.begin(), header.end());
    std::ranges::copy(content(state), std::back_inserter(all));
    if (state.exit_popup_made)
        all.insert(all.end(), {Spot::yes, Spot::cancel});
    return all;
}

namespace {

std::string text_of(const std::optional<int>& number, const std::string& otherwise) {
    return number ? std::to_string(*number) : otherwise;
}

std::string start_text(const State& state) {
    switch (state.start) {
    case Start::waiting:
        return "Please Wait...";
    case Start::failed:
        return "Failed to start child process";
    case Start::fresh:
        break;
    }
    return is_tx(state) ? "Start TX Test" : "Start RX Test";
}

std::string label_of(Spot spot) {
    return spot == Spot::power ? "Power:" : spot == Spot::channel ? "Channel:" : "";
}

std::string packets_text(const State& state) {
    static const std::array<const char*, 4> texts{"?", "0", "N", "Reset Failed"};
    return std::string("Received Packets: ") + texts.at(static_cast<std::size_t>(state.packets));
}

} // namespace

std::string name_of(const State& state, Spot spot) {
    switch (spot) {
    case Spot::none:
        break;
    case Spot::tx_tab:
        return "TX Test";
    case Spot::rx_tab:
        return "RX Test";
    case Spot::exit:
        return "Exit";
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
    case Spot::count:
        return "Count Received Packets";
    case Spot::reset:
        return "Reset Count";
    case Spot::yes:
        return "Yes";
    case Spot::cancel:
        return "Cancel";
    case Spot::number:
        return std::to_string(*picked(state).shown);
    }
    return {};
}

std::string appearance(const State& state) {
    const auto button = [&state](Spot spot) {
        const std::string text = name_of(state, spot) + (is_barred(state, spot) ? "" : "*");
        return spot == state.focus && !state.behind ? "[" + text + "]"
                                                    : text; // the front window's has the focus
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
            items.push_back(packets_text(state));
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
    return line;
}

// What can happen.

namespace {

bool in_front(const State& state) { return !state.behind; }

/** Whether OK there sends the radio a command. */
bool commands(const State& state) {
    return in_front(state) &&
           (state.focus == Spot::stream || state.focus == Spot::stop || state.focus == Spot::count ||
            state.focus == Spot::reset || state.focus == Spot::number);
}
bool ok_starts(const State& state) { return in_front(state) && state.focus == Spot::start; }

bool has_button(const State& state, Spot spot) {
    const std::vector<Spot> all = buttons(state);
    return std::ranges::find(all, spot) != all.end();
}

void add_keys(std::vector<Transition>& all) {
    constexpr auto grain = page | start | popup | focus | number | stream | mirrored;
    constexpr auto coarse = page | start | popup | stream;
    for (const std::string key : {"Left", "Right", "Up", "Down"}) {
        all.push_back(
            {.name = key, .key = key, .grain = grain, .cost = 20, .can_happen = [key](const State& s) {
                 return in_front(s) && stops_well(s, key);
             }});
        all.push_back({.name = key + " many times",
                       .key = key,
                       .times = 25,
                       .grain = page | popup | mirrored,
                       .cost = 100,
                       .can_happen = [](const State& s) { return in_front(s) && in_picker(s); }});
    }
    for (const std::string key : {"Left", "Right"})
        all.push_back({.name = key + " held",
                       .act = Act::hold,
                       .key = key,
                       .times = 25,
                       .grain = page | popup,
                       .cost = 2000,
                       .can_happen = [](const State& s) { return in_front(s) && in_picker(s); }});
    all.push_back({.name = "Down, behind",
                   .key = "Down",
                   .grain = page | popup,
                   .cost = 30,
                   .can_happen = [](const State& s) { return s.behind; }});
    for (const std::string key : {"Back", "Exit", "Red"})
        all.push_back({.name = key,
                       .key = key,
                       .grain = coarse | behind | mirrored,
                       .cost = 60,
                       .can_happen = [key](const State& s) { return in_front(s) || key == "Red"; }});
    all.push_back({.name = "Back held",
                   .act = Act::hold,
                   .key = "Back",
                   .grain = page | popup,
                   .cost = 1200,
                   .can_happen = in_front});
}

void add_ok(std::vector<Transition>& all) {
    constexpr auto grain = page | waits | popup | focus | number | stream | radio;
    all.push_back(
        {.name = "OK", .key = "OK", .grain = grain | mirrored, .cost = 30, .can_happen = [](const State& s) {
             return in_front(s) && !ok_starts(s);
         }});
    all.push_back({.name = "OK held",
                   .act = Act::hold,
                   .key = "OK",
                   .grain = page | popup | focus,
                   .cost = 1200,
                   .can_happen = [](const State& s) { return in_front(s) && !ok_starts(s); }});
    all.push_back({.name = "OK, the radio starts",
                   .key = "OK",
                   .grain = page | start,
                   .cost = 800,
                   .can_happen = ok_starts});
    all.push_back({.name = "OK, the radio does not answer",
                   .key = "OK",
                   .bring_up = BringUp::silent,
                   .grain = page | start,
                   .cost = 600,
                   .can_happen = ok_starts});
    all.push_back({.name = "OK, the relay is missing",
                   .key = "OK",
                   .bring_up = BringUp::no_relay,
                   .grain = page,
                   .cost = 4000,
                   .can_happen = ok_starts});
    constexpr auto refused = page | popup | focus | stream;
    const auto add = [&](const std::string& how, Answer answer, int cost) {
        all.push_back({.name = "OK, answered " + how,
                       .key = "OK",
                       .answer = answer,
                       .grain = refused,
                       .cost = cost,
                       .can_happen = commands});
    };
    add("with a code", Answer::code, 40);
    add("with an error", Answer::error, 40);
    add("with a wrong signature", Answer::wrong_signature, 40);
    add("late, with a key meanwhile", Answer::late, 800);
}

void add_actions(std::vector<Transition>& all) {
    constexpr std::array spots{Spot::tx_tab, Spot::rx_tab,  Spot::exit,   Spot::start,
                               Spot::power,  Spot::channel, Spot::stream, Spot::stop,
                               Spot::count,  Spot::reset,   Spot::yes,    Spot::cancel};
    constexpr std::array names{"TX tab",       "RX tab",         "Exit button",   "start button",
                               "power button", "channel button", "stream button", "stop button",
                               "count button", "reset button",   "Yes",           "Cancel"};
    constexpr auto seldom = page | popup | stream | behind; // it ends the application
    for (std::size_t i = 0; i < spots.size(); ++i)
        all.push_back(
            {.name = std::string("screen reader: ") + names.at(i),
             .act = Act::activate,
             .spot = spots.at(i),
             .grain = spots.at(i) == Spot::yes ? seldom : page | waits | popup | stream | radio | behind,
             .cost = spots.at(i) == Spot::start ? 800 : 40,
             .can_happen = [spot = spots.at(i)](const State& s) { return has_button(s, spot); }});
}

void add_rest(std::vector<Transition>& all) {
    const auto always = [](const State&) { return true; };
    constexpr auto grain = page | waits | popup | stream;
    const auto add = [&](const char* name, Act act, const char* key, std::uint64_t where, int cost) {
        all.push_back(
            {.name = name, .act = act, .key = key, .grain = where, .cost = cost, .can_happen = always});
    };
    add("the radio is ready", Act::event, "ready", grain | texts | packets | behind, 50);
    add("another event", Act::event, "READY", grain, 30);
    add("an event with a wrong signature", Act::bad_event, "", grain, 30);
    add("a language of the other direction", Act::language, "", grain | texts | behind | mirrored, 200);
    add("a second launch", Act::launch, "", page | waits | popup | behind, 500);
    add("SIGTERM and a new start", Act::terminate, "", page | popup | stream, 1500);
    all.push_back({.name = "the window is closed, and a new start",
                   .act = Act::close,
                   .grain = page | popup,
                   .cost = 1500,
                   .can_happen = in_front});
}

std::vector<Transition> all_transitions() {
    std::vector<Transition> all;
    add_keys(all);
    add_ok(all);
    add_actions(all);
    add_rest(all);
    return all;
}

} // namespace

const std::vector<Transition>& transitions() {
    static const std::vector<Transition> all = all_transitions();
    return all;
}

} // namespace walk
