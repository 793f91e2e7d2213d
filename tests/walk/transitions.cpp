#include "model.h"

#include <algorithm>

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

using Condition = std::function<bool(const State&)>;

/** All of them, as they are added one by one. */
class Transitions {
public:
    Transition& add(const std::string& name, Act act, const std::string& key, std::uint64_t grain, int cost,
                    Condition can_happen) {
        all.push_back({.name = name, .act = act, .key = key, .grain = grain, .cost = cost});
        all.back().can_happen = std::move(can_happen);
        return all.back();
    }
    Transition& press(const std::string& name, const std::string& key, std::uint64_t grain, int cost,
                      Condition can_happen) {
        return add(name, Act::press, key, grain, cost, std::move(can_happen));
    }

    std::vector<Transition> all = {};
};

bool always(const State& /*state*/) { return true; }
bool behind_another(const State& state) { return state.behind; }
bool picks(const State& state) { return in_front(state) && in_picker(state); }

void add_keys(Transitions& transitions) {
    constexpr auto grain = page | waits | popup | focus | number | stream | mirrored;
    constexpr auto coarse = page | waits | popup | stream | behind | mirrored;
    constexpr int to_a_limit = 25;
    for (const std::string key : {"Left", "Right", "Up", "Down"}) {
        transitions.press(key, key, grain, 20,
                          [key](const State& state) { return in_front(state) && stops_well(state, key); });
        transitions.press(key + " many times", key, page | popup | mirrored, 100, picks).times = to_a_limit;
    }
    for (const std::string key : {"Left", "Right"})
        transitions.add(key + " held", Act::hold, key, page | popup, 1200, picks).times = to_a_limit;
    transitions.press("Down, behind", "Down", page | popup, 30, behind_another);
    for (const std::string key : {"Back", "Exit"})
        transitions.press(key, key, coarse, 60, in_front);
    transitions.press("Red", "Red", coarse, 60, always);
    transitions.press("Escape", "Escape", page | popup, 60, in_front);
    transitions.add("Back held", Act::hold, "Back", page | popup, 500, in_front);
}

void add_ok(Transitions& transitions) {
    constexpr auto grain = page | waits | popup | focus | number | stream | radio | mirrored;
    const auto no_start = [](const State& state) { return in_front(state) && !ok_starts(state); };
    const auto opens_picker = [](const State& state) {
        return in_front(state) && (state.focus == Spot::power || state.focus == Spot::channel);
    };
    transitions.press("OK", "OK", grain, 30, no_start);
    transitions.press("OK, a picker opens", "OK", page | focus | memory, 30, opens_picker);
    transitions.add("OK held", Act::hold, "OK", page | popup | focus, 500, no_start);
    transitions.press("OK twice, the radio starts", "OK", page | start, 300, ok_starts).times = 2;
    transitions.press("OK, the radio does not answer", "OK", page | start, 300, ok_starts).bring_up =
        BringUp::silent;
    transitions.press("OK, the relay is missing", "OK", page, 4000, ok_starts).bring_up = BringUp::no_relay;
    const auto add = [&](const std::string& name, Answer answer, const std::string& behaviour, int cost) {
        Transition& ok =
            transitions.press("OK, " + name, "OK", page | popup | focus | stream, cost, commands);
        ok.answer = answer;
        ok.behaviour = behaviour;
    };
    add("refused", Answer::refused, "code 5", 40);
    add("answered late, with OK and Up meanwhile", Answer::late, "late 500",
        600); // longer than a press waits
}

void add_actions(Transitions& transitions) {
    constexpr auto grain = page | waits | popup | stream | radio | behind;
    constexpr auto seldom = page | popup | stream; // it ends the application
    const std::vector<std::pair<Spot, const char*>> spots{{Spot::tx_tab, "TX tab"},
                                                          {Spot::rx_tab, "RX tab"},
                                                          {Spot::exit, "Exit button"},
                                                          {Spot::start, "start button"},
                                                          {Spot::power, "power button"},
                                                          {Spot::channel, "channel button"},
                                                          {Spot::stream, "stream button"},
                                                          {Spot::stop, "stop button"},
                                                          {Spot::count, "count button"},
                                                          {Spot::reset, "reset button"},
                                                          {Spot::yes, "Yes"},
                                                          {Spot::cancel, "Cancel"}};
    for (const auto& [spot, name] : spots)
        transitions
            .add(std::string("screen reader: ") + name, Act::activate, "", spot == Spot::yes ? seldom : grain,
                 spot == Spot::start ? 300 : 20,
                 [spot = spot](const State& state) { return has_button(state, spot); })
            .spot = spot;
}

void add_rest(Transitions& transitions) {
    constexpr auto grain = page | waits | popup | stream;
    const std::string other_language = "a language of the other direction";
    transitions.add("the radio is ready", Act::event, "ready", grain | texts | packets | behind, 50, always);
    transitions.add("another event", Act::event, "READY", grain, 30, always);
    transitions.add(other_language, Act::language, "", grain | texts | mirrored | made, 60, always);
    transitions.add(other_language + ", behind", Act::language, "", page | waits, 60, behind_another);
    transitions.add("a second launch", Act::launch, "", page | waits | popup | behind, 40, always);
    transitions.add("another window comes and goes", Act::interrupt, "", page | waits | popup | focus, 200,
                    in_front);
    transitions.add("SIGTERM and a new start", Act::terminate, "", page | popup | stream, 700, always);
    transitions.add("the window is closed, and a new start", Act::close, "", page | popup, 700, in_front);
    transitions.add("the window is destroyed, and a new start", Act::destroy, "", page | popup, 700,
                    in_front);
}

std::vector<Transition> all_transitions() {
    Transitions transitions;
    add_keys(transitions);
    add_ok(transitions);
    add_actions(transitions);
    add_rest(transitions);
    return transitions.all;
}

} // namespace

const std::vector<Transition>& transitions() {
    static const std::vector<Transition> all = all_transitions();
    return all;
}

} // namespace walk
