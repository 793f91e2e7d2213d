#include "model.h"

#include "ncp_host/contract.h"

#include <algorithm>

namespace model {
namespace {

const std::string long_text(1U << 20U, 'x');

/** Commands, and the text logged if one fails; empty if only the page shows the failure. */
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
    std::string cause; /**< the logged text */
    Answer answer = Answer::refused;
    std::string packets = some_packets;
};

std::vector<Behaviour> behaviours(const std::string& method) {
    const std::string error = "Error Message[GDBus.Error:org.freedesktop.DBus.Error.";
    const auto reply = [&method](const std::string& value, const std::string& type) {
        return Behaviour{"reply " + value, "Reply of " + method + " has the type " + type + ", expected "};
    };
    // The reply time-out of the bus is four seconds.
    std::vector<Behaviour> all{{"code -3", "Result = -3"},
                               {"error", error + "Failed: " + method + " failed]"},
                               {"late 1500", "Result = 0", Answer::normal},
                               {"late 6000", error + "NoReply", Answer::lost},
                               {"dies", error + "NoReply"},
                               {"is away", error + "ServiceUnknown"},
                               reply("()", "()"),
                               reply("((0, [{'0': <0>}]),)", "((iaa{sv}))")};
    if (method != simulator::contract::statistics_method) {
        all.insert(all.end(), {reply("('0',)", "(s)"), reply("(0, '" + long_text + "')", "(is)")});
        return all;
    }
    all.insert(all.end(), {reply("(0, '7')", "(is)"), reply("('" + long_text + "',)", "(s)")});
    for (const std::string text : {"7", "\u202e7\u202c", "<b>7</b>&amp;", "\x01\x1b[31m7\x7f"})
        all.push_back({"reply ('" + text + " packets" + (text == "7" ? long_text : "") + "', 0)",
                       "Result = 0", Answer::normal, text == "7" ? some_packets : text});
    return all;
}

Transition named(const std::string& name) {
    return *std::ranges::find(transitions(), name, &Transition::name);
}

/** Whether a step sends the radio only this command, and the result depends on the answer. */
bool asks(const State& state, Transition by, const std::string& method) {
    if (!by.can_happen(state))
        return false;
    const Outcome outcome = follow(state, by);
    by.answer = Answer::refused;
    return outcome.calls.size() == 1 && outcome.calls.front().starts_with(method + "(") &&
           follow(state, by).state != outcome.state;
}

} // namespace

std::vector<Fault> faults() {
    std::vector<Fault> all;
    for (const auto& [method, complaint] : commands)
        for (const Behaviour& behaviour : behaviours(method)) {
            Transition right = named(method == "ember_start" ? "the radio is ready" : "OK");
            right.can_happen = [right, method = method](const State& state) {
                return asks(state, right, method);
            };
            Transition wrong = right;
            wrong.name = method + ": " + behaviour.text.substr(0, 40);
            wrong.behaviour = behaviour.text;
            wrong.answer = behaviour.answer;
            wrong.packets = behaviour.packets;
            if (!complaint.empty())
                wrong.log[complaint] = behaviour.answer == Answer::normal ? 0 : 1;
            wrong.log[behaviour.cause] = 1;
            all.push_back({wrong, right});
        }
    const std::vector<std::pair<std::string, std::string>> events{
        {"()", "has the type (), expected (s)"},
        {"(7,)", "has the type (i), expected (s)"},
        {"('ready', 0)", "has the type (si), expected (s)"},
        {"(('ready', [{'ready': <'ready'>}]),)", "has the type ((saa{sv})), expected (s)"},
        {"('" + long_text + "',)", "Event Data: [" + long_text + "]"},
        {R"(('ready\n\u0001\u001b[31m',))", R"(Event Data: [ready\n\x01\x1b[31m])"},
        {R"(('\u202e<b>ready</b>&amp;',))", R"(Event Data: [\u202e<b>ready</b>&amp;])"}};
    for (const auto& [values, cause] : events) {
        Transition wrong{"event: " + values.substr(0, 40), Act::event, values};
        const long is_text = cause.starts_with("Event") ? 1 : 0;
        wrong.log = {{cause, 1}, {"Event Data: [", is_text}, {", expected (s)", 1 - is_text}};
        all.push_back({wrong, named("the radio is ready")});
    }
    return all;
}

} // namespace model
