#include "model.h"

#include <algorithm>
#include <regex>

namespace model {
namespace {

bool always(const State& /*state*/) { return true; }
bool behind_another(const State& state) { return state.behind; }
bool in_front(const State& state) { return !state.behind; }
bool radio_can_answer(const State& state) { return state.radio != Radio::unreachable; }
auto focus_on(const Row& widgets) {
    return [widgets](const State& state) { return in_front(state) && has(widgets, focus_of(state)); };
}
bool ok_starts_nothing(const State& state) { return in_front(state) && focus_of(state) != "start"; }

std::vector<Transition> all_transitions() {
    using enum Act;
    constexpr int to_a_limit = 25;
    const std::string parts = "page waits popup stream";
    const std::string coarse = parts + " behind mirrored";
    const std::string details = parts + " focus number mirrored";
    const std::string radio_command = "page popup focus stream";
    const auto picks = focus_on({"number"});
    const auto ok_starts = focus_on({"start"});
    const auto ok_commands =
        focus_on({"stream", "Stop Test", "Count Received Packets", "Reset Count", "Stop", "number"});
    std::vector<Transition> all{
        {"Down, the window is behind", press, "Down", "page popup", 30, behind_another},
        {"Back", press, "Back", coarse, 60, in_front},
        {"Exit", press, "Exit", coarse, 60, in_front},
        {"Red", press, "Red", coarse, 60, always},
        {"Escape", press, "Escape", "page popup", 60, in_front},
        {"Back held", hold, "Back", "page popup", 500, in_front},
        {"Left held", hold, "Left", "page popup", 1200, picks, to_a_limit},
        {"Right held", hold, "Right", "page popup", 1200, picks, to_a_limit},
        {"OK", press, "OK", details + " radio", 30, ok_starts_nothing},
        {"OK, a picker opens", press, "OK", "page focus picker", 30, focus_on({"power", "channel"})},
        {"OK held", hold, "OK", "page popup focus", 500, ok_starts_nothing},
        {"OK twice, the radio is silent", press, "OK", "page start", 300, ok_starts, 2, "without zigbeed"},
        {"OK, the radio is silent", press, "OK", "page start", 300, ok_starts, 1, "without zigbeed"},
        {"OK, socat is missing", press, "OK", "page", 4000, ok_starts, 1, "without socat"},
        {"OK, refused", press, "OK", radio_command, 40, ok_commands, 1, "code 5", Answer::refused},
        {"OK, answered after a delay", press, "OK", radio_command, 600, ok_commands, 1, "late 500"},
        {"the radio is ready", event, "('ready',)", parts + " texts packets behind", 50, always},
        {"another event", event, "('READY',)", parts, 30, always},
        {"the language changes", change_language, "", parts + " texts mirrored made", 60, always},
        {"the language changes, the window is behind", change_language, "", "page waits", 60, behind_another},
        {"a second launch", launch_again, "", "page waits popup behind", 40, always},
        {"another window opens and closes", cover, "", "page waits popup focus", 200, in_front},
        {"the radio service restarts", restart_service, "", "page popup stream", 200, radio_can_answer},
        {"SIGTERM", terminate, "SIGTERM", "page popup stream", 700, always},
        {"the window is closed", close, "the window was closed", "page popup", 700, in_front},
        {"the window is destroyed", destroy, "the window was destroyed", "page popup", 700, in_front}};
    for (const std::string key : {"Left", "Right", "Up", "Down"}) {
        all.push_back({key, press, key, details, 20, in_front});
        all.push_back({key + " many times", press, key, "page popup mirrored", 100, picks, to_a_limit});
    }
    for (const std::string button :
         {"TX Test", "RX Test", "Exit", "start", "power", "channel", "stream", "Stop Test",
          "Count Received Packets", "Reset Count", "Stop", "Yes", "Cancel"}) {
        const auto is_there = [button](const State& state) { // visible, behind a popup or in a closed one
            return has(header, button) || has(content.at(state.page), button) ||
                   (state.exit_popup_made && has(exit_popup, button));
        };
        const std::string mask =
            button == "Yes" ? "page popup stream" : parts + " radio behind"; // "Yes" stops the application
        all.push_back(
            {"screen reader: " + button, activate, button, mask, button == "start" ? 300 : 20, is_there});
    }
    return all;
}

/** Each command, and the text logged if it fails; empty if only the page shows the failure. */
const std::vector<std::pair<std::string, std::string>> commands{
    {"ember_start", ""},
    {"ember_set_power", "failed to set power"},
    {"ember_set_channel", "failed to set channel"},
    {"ember_start_stream", "start Stream failed"},
    {"ember_stop_stream", "stop Stream failed"},
    {"ember_stop", "stop test failed"},
    {"ember_get_rx_statistics", "failed to get rx statistics"},
    {"ember_reset_rx_statistics", ""}};

/** A faulty or unusual answer of the service. */
struct Behaviour {
    std::string text;
    std::string cause; /**< the logged text; METHOD stands for the command */
    Answer answer = Answer::refused;
    std::string packets = {}; /**< the packet count, only for the command that returns one */
};

const std::string long_text(1U << 20U, 'x');
const std::string error = "Error Message[GDBus.Error:org.freedesktop.DBus.Error.";
const std::string reply = "Reply of METHOD has the type ";

const std::vector<Behaviour> behaviours{
    {"code -3", "Result = -3"},
    {"error", error + "Failed: METHOD failed]"},
    // The reply time-out of the bus is four seconds.
    {"late 1500", "Result = 0", Answer::normal},
    {"late 6000", error + "NoReply", Answer::lost},
    {"dies", error + "NoReply"},
    {"is away", error + "ServiceUnknown"},
    {"reply ()", reply + "(), expected "},
    {"reply ((0, [{'0': <0>}]),)", reply + "((iaa{sv})), expected "},
    {"reply (0, '" + long_text + "')", reply + "(is), expected "},
    {"reply ('" + long_text + "',)", reply + "(s), expected "},
    {"reply ('7 packets" + long_text + "', 0)", "Result = 0", Answer::normal, some_packets},
    {"reply ('\u202e7\u202c packets', 0)", "Result = 0", Answer::normal, "\u202e7\u202c"},
    {"reply ('<b>7</b>&amp; packets', 0)", "Result = 0", Answer::normal, "<b>7</b>&amp;"},
    {"reply ('\x01\x1b[31m7\x7f packets', 0)", "Result = 0", Answer::normal, "\x01\x1b[31m7\x7f"}};

/** Values of an event, and the logged text. */
const std::vector<std::pair<std::string, std::string>> events{
    {"()", "has the type (), expected (s)"},
    {"(7,)", "has the type (i), expected (s)"},
    {"('ready', 0)", "has the type (si), expected (s)"},
    {"(('ready', [{'ready': <'ready'>}]),)", "has the type ((saa{sv})), expected (s)"},
    {"('" + long_text + "',)", "Event Data: [" + long_text + "]"},
    {R"(('ready\n\u0001\u001b[31m',))", R"(Event Data: [ready\n\x01\x1b[31m])"},
    {R"(('\u202e<b>ready</b>&amp;',))", R"(Event Data: [\u202e<b>ready</b>&amp;])"}};

Transition faulty(const std::string& normal, const std::string& fault) {
    Transition by = *std::ranges::find(transitions, normal, &Transition::name);
    by.name += ": " + fault.substr(0, 60);
    return by;
}

/** Whether a step can happen, sends the radio only this command, and has a result that depends on the answer. */
bool asks(const State& state, Transition by, const std::string& method) {
    const Outcome outcome = follow(state, by);
    by.answer = Answer::refused;
    return by.can_happen(state) && outcome.calls.size() == 1 &&
           outcome.calls.front().starts_with(method + "(") && key(follow(state, by)) != key(outcome);
}

} // namespace

const std::vector<Transition> transitions = all_transitions();

std::vector<Transition> faults() {
    std::vector<Transition> all;
    for (const auto& [method, complaint] : commands)
        for (const Behaviour& behaviour : behaviours) {
            if (!behaviour.packets.empty() && method != "ember_get_rx_statistics")
                continue;
            Transition by =
                faulty(method == "ember_start" ? "the radio is ready" : "OK", method + ": " + behaviour.text);
            by.can_happen = [by, method = method](const State& state) { return asks(state, by, method); };
            by.behaviour = behaviour.text;
            by.answer = behaviour.answer;
            by.packets = behaviour.packets.empty() ? some_packets : behaviour.packets;
            by.log[std::regex_replace(behaviour.cause, std::regex("METHOD"), method)] = 1;
            if (!complaint.empty())
                by.log[complaint] = behaviour.answer == Answer::normal ? 0 : 1;
            all.push_back(by);
        }
    for (const auto& [values, cause] : events) {
        Transition by = faulty("the radio is ready", "sent as " + values);
        by.key = values;
        const long is_text = cause.starts_with("Event") ? 1 : 0;
        by.log = {{cause, 1}, {"Event Data: [", is_text}, {", expected (s)", 1 - is_text}};
        all.push_back(by);
    }
    return all;
}

} // namespace model
