#include "model.h"

#include <algorithm>

namespace model {
namespace {

bool always(const State& /*state*/) { return true; }
bool behind_another(const State& state) { return state.behind; }
bool in_front(const State& state) { return !state.behind; }
bool radio_can_answer(const State& state) { return state.radio != Radio::unreachable; }
bool picks(const State& state) { return in_front(state) && in_picker(state); }
bool opens_picker(const State& state) {
    return in_front(state) && (state.focus == "power" || state.focus == "channel");
}
bool ok_starts(const State& state) { return in_front(state) && state.focus == "start"; }
bool ok_starts_nothing(const State& state) { return in_front(state) && state.focus != "start"; }
/** Whether OK sends the radio a command. */
bool ok_commands(const State& state) {
    return in_front(state) && has({"stream", "stop", "count", "reset", "number"}, state.focus);
}

/** Skips the numbers between the limits, except those next to a limit. */
bool stops_well(const State& state, const std::string& key) {
    if (!in_picker(state))
        return true;
    const Number& number = number_of(state, state.popup);
    const int next = *number.shown + step_of(state, key);
    return next <= number.lowest + 1 || next >= number.highest - 1;
}

std::vector<Transition> all_transitions() {
    constexpr int to_a_limit = 25;
    constexpr unsigned page_parts = page | waits | popup | stream;
    constexpr unsigned spots = page_parts | focus | number | mirrored;
    constexpr unsigned coarse = page_parts | behind | mirrored;
    constexpr unsigned command = page | popup | focus | stream;
    const std::string other_language = "a language with the opposite direction";
    std::vector<Transition> all{
        {"Down, behind", Act::press, "Down", page | popup, 30, behind_another},
        {"Back", Act::press, "Back", coarse, 60, in_front},
        {"Exit", Act::press, "Exit", coarse, 60, in_front},
        {"Red", Act::press, "Red", coarse, 60, always},
        {"Escape", Act::press, "Escape", page | popup, 60, in_front},
        {"Back held", Act::hold, "Back", page | popup, 500, in_front},
        {"Left held", Act::hold, "Left", page | popup, 1200, picks, to_a_limit},
        {"Right held", Act::hold, "Right", page | popup, 1200, picks, to_a_limit},
        {"OK", Act::press, "OK", spots | radio, 30, ok_starts_nothing},
        {"OK, a picker opens", Act::press, "OK", page | focus | memory, 30, opens_picker},
        {"OK held", Act::hold, "OK", page | popup | focus, 500, ok_starts_nothing},
        {"OK twice, the radio does not answer", Act::press, "OK", page | start, 300, ok_starts, 2, "zigbeed"},
        {"OK, the radio does not answer", Act::press, "OK", page | start, 300, ok_starts, 1, "zigbeed"},
        {"OK, the relay is missing", Act::press, "OK", page, 4000, ok_starts, 1, "socat"},
        {"OK, refused", Act::press, "OK", command, 40, ok_commands, 1, "", "code 5", Answer::refused},
        {"OK, answered after a delay", Act::press, "OK", command, 600, ok_commands, 1, "", "late 500"},
        {"the radio is ready", Act::event, "('ready',)", page_parts | texts | packets | behind, 50, always},
        {"another event", Act::event, "('READY',)", page_parts, 30, always},
        {other_language, Act::language, "", page_parts | texts | mirrored | made, 60, always},
        {other_language + ", behind", Act::language, "", page | waits, 60, behind_another},
        {"a second launch", Act::launch, "", page | waits | popup | behind, 40, always},
        {"another window opens and closes", Act::interrupt, "", page | waits | popup | focus, 200, in_front},
        {"the radio service restarts", Act::replace, "", page | popup | stream, 200, radio_can_answer},
        {"SIGTERM and a restart", Act::terminate, "SIGTERM", page | popup | stream, 700, always},
        {"the window is closed, and a restart", Act::close, "the window was closed", page | popup, 700,
         in_front},
        {"the window is destroyed, and a restart", Act::destroy, "the window was destroyed", page | popup,
         700, in_front}};
    for (const std::string key : {"Left", "Right", "Up", "Down"}) {
        all.push_back({key, Act::press, key, spots, 20,
                       [key](const State& state) { return in_front(state) && stops_well(state, key); }});
        all.push_back(
            {key + " many times", Act::press, key, page | popup | mirrored, 100, picks, to_a_limit});
    }
    for (const std::string button : {"TX Test", "RX Test", "Exit", "start", "power", "channel", "stream",
                                     "stop", "count", "reset", "Yes", "Cancel"}) {
        const auto is_there = [button](const State& state) { // visible, behind a popup or in a closed one
            return has(header, button) || has(content.at(state.page), button) ||
                   (state.exit_popup_made && has(exit_popup, button));
        };
        const unsigned mask =
            button == "Yes" ? page | popup | stream : page_parts | radio | behind; // it stops the application
        all.push_back({"screen reader: " + button, Act::activate, button, mask, button == "start" ? 300 : 20,
                       is_there});
    }
    return all;
}

} // namespace

const std::vector<Transition>& transitions() {
    static const std::vector<Transition> all = all_transitions();
    return all;
}

} // namespace model
