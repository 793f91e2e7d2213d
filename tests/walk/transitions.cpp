#include "model.h"

#include <algorithm>
#include <array>

namespace walk {
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

/** Of the numbers between the limits only those beside a limit are stopped at. */
bool stops_well(const State& state, const std::string& key) {
    if (!in_picker(state))
        return true;
    const auto [lowest, highest] = limits(state);
    const int next = std::clamp(*picked(state).shown + steps(state, key), lowest, highest);
    return next <= lowest + 1 || next >= highest - 1;
}

void add_keys(std::vector<Transition>& all) {
    constexpr auto grain = page | waits | popup | focus | number | stream | mirrored;
    constexpr auto coarse = page | waits | popup | stream;
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
                       .cost = 1200,
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
    all.push_back(
        {.name = "Escape", .key = "Escape", .grain = page | popup, .cost = 60, .can_happen = in_front});
    all.push_back({.name = "Back held",
                   .act = Act::hold,
                   .key = "Back",
                   .grain = page | popup,
                   .cost = 500,
                   .can_happen = in_front});
}

void add_ok(std::vector<Transition>& all) {
    constexpr auto grain = page | waits | popup | focus | number | stream | radio;
    all.push_back(
        {.name = "OK", .key = "OK", .grain = grain | mirrored, .cost = 30, .can_happen = [](const State& s) {
             return in_front(s) && !ok_starts(s);
         }});
    all.push_back({.name = "OK, a picker opens",
                   .key = "OK",
                   .grain = page | focus | memory,
                   .cost = 30,
                   .can_happen = [](const State& s) {
                       return in_front(s) && (s.focus == Spot::power || s.focus == Spot::channel);
                   }});
    all.push_back({.name = "OK held",
                   .act = Act::hold,
                   .key = "OK",
                   .grain = page | popup | focus,
                   .cost = 500,
                   .can_happen = [](const State& s) { return in_front(s) && !ok_starts(s); }});
    all.push_back({.name = "OK twice, the radio starts",
                   .key = "OK",
                   .times = 2,
                   .grain = page | start,
                   .cost = 300,
                   .can_happen = ok_starts});
    all.push_back({.name = "OK, the radio does not answer",
                   .key = "OK",
                   .bring_up = BringUp::silent,
                   .grain = page | start,
                   .cost = 300,
                   .can_happen = ok_starts});
    all.push_back({.name = "OK, the relay is missing",
                   .key = "OK",
                   .bring_up = BringUp::no_relay,
                   .grain = page,
                   .cost = 4000,
                   .can_happen = ok_starts});
    constexpr auto refused = page | popup | focus | stream;
    const auto add = [&](const std::string& name, Answer answer, const std::string& behaviour, int cost) {
        all.push_back({.name = "OK, " + name,
                       .key = "OK",
                       .answer = answer,
                       .behaviour = behaviour,
                       .grain = refused,
                       .cost = cost,
                       .can_happen = commands});
    };
    add("refused", Answer::refused, "code 5", 40);
    add("answered late, with OK and Up meanwhile", Answer::late, "late 500",
        600); // longer than a press may wait
}

void add_actions(std::vector<Transition>& all) {
    constexpr std::array spots{Spot::tx_tab, Spot::rx_tab,  Spot::exit,   Spot::start,
                               Spot::power,  Spot::channel, Spot::stream, Spot::stop,
                               Spot::count,  Spot::reset,   Spot::yes,    Spot::cancel};
    constexpr std::array names{"TX tab",       "RX tab",         "Exit button",   "start button",
                               "power button", "channel button", "stream button", "stop button",
                               "count button", "reset button",   "Yes",           "Cancel"};
    constexpr auto seldom = page | popup | stream; // it ends the application
    for (std::size_t i = 0; i < spots.size(); ++i)
        all.push_back(
            {.name = std::string("screen reader: ") + names.at(i),
             .act = Act::activate,
             .spot = spots.at(i),
             .grain = spots.at(i) == Spot::yes ? seldom : page | waits | popup | stream | radio | behind,
             .cost = spots.at(i) == Spot::start ? 300 : 20,
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
    add("a language of the other direction", Act::language, "", grain | texts | mirrored | made, 60);
    all.push_back({.name = "a language of the other direction, behind",
                   .act = Act::language,
                   .grain = page | waits,
                   .cost = 60,
                   .can_happen = [](const State& s) { return s.behind; }});
    add("a second launch", Act::launch, "", page | waits | popup | behind, 40);
    add("SIGTERM and a new start", Act::terminate, "", page | popup | stream, 700);
    all.push_back({.name = "the window is closed, and a new start",
                   .act = Act::close,
                   .grain = page | popup,
                   .cost = 700,
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
