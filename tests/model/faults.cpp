#include "faults.h"

#include "ncp_host/contract.h"

#include <array>

namespace model {
namespace {

constexpr std::size_t mebibyte = 1U << 20U;

struct Command {
    std::string method;
    std::string complaint; /**< on the log when it fails; nothing: on the page alone */
};

const std::array<Command, 8> commands{{{"ember_start", ""},
                                       {"ember_set_power", "failed to set power"},
                                       {"ember_set_channel", "failed to set channel"},
                                       {"ember_start_stream", "start Stream failed"},
                                       {"ember_stop_stream", "stop Stream failed"},
                                       {"ember_stop", "stop test failed"},
                                       {"ember_get_rx_statistics", "failed to get rx statistics"},
                                       {"ember_reset_rx_statistics", ""}}};

struct Fault {
    std::string behaviour;
    std::string cause; /**< what the log says */
    Answer answer = Answer::refused;
    std::string packets = some_packets;
};

std::string error(const std::string& name) {
    return "Error Message[GDBus.Error:org.freedesktop.DBus.Error." + name;
}

std::vector<Fault> faults_of(const std::string& method) {
    const auto reply = [&method](const std::string& value, const std::string& type) {
        return Fault{"reply " + value, "Reply of " + method + " has the type " + type + ", expected "};
    };
    const bool has_text = method == simulator::contract::statistics_method;
    const std::string long_text(mebibyte, 'x');
    // The bus gives up a call after four seconds.
    std::vector<Fault> faults{{"code -3", "Result = -3"},
                              {"error", error("Failed: " + method + " failed]")},
                              reply("()", "()"),
                              has_text ? reply("(0, '7')", "(is)") : reply("('0',)", "(s)"),
                              reply("((0, [{'0': <0>}]),)", "((iaa{sv}))"),
                              has_text ? reply("('" + long_text + "',)", "(s)")
                                       : reply("(0, '" + long_text + "')", "(is)"),
                              {"late 1500", "Result = 0", Answer::normal},
                              {"late 6000", error("NoReply"), Answer::lost},
                              {"dies", error("NoReply")},
                              {"is away", error("ServiceUnknown")}};
    if (has_text)
        for (const std::string& text : {"7 " + long_text, std::string("\u202e7\u202c"),
                                        std::string("<b>7</b>&amp;"), std::string("\x01\x1b[31m7\x7f")})
            faults.push_back({"reply ('" + text + " packets', 0)", "Result = 0", Answer::normal,
                              text.starts_with('7') ? some_packets : text});
    return faults;
}

/** To where a step asks the radio for this, and what comes of it depends on the radio. */
void go_where_it_asks(Driver& driver, Transition step, const std::string& method) {
    const auto asks = [&](const State& state, const Transition& by) {
        if (by.name != step.name)
            return false;
        const Outcome outcome = follow(state, by);
        step.answer = Answer::refused;
        return outcome.calls.size() == 1 && outcome.calls.front().starts_with(method + "(") &&
               follow(state, step).state != outcome.state;
    };
    Steps way = nearest(driver.state(), asks).value();
    way.pop_back();
    for (const Transition& by : way)
        driver.take(by);
}

void take(Driver& driver, const Command& command, const Fault& fault) {
    const Transition& step = transition(command.method == "ember_start" ? "the radio is ready" : "OK");
    Transition wrong = step;
    wrong.name = command.method + ": " + fault.behaviour.substr(0, 30) + " " + fault.cause.substr(0, 100);
    wrong.behaviour = fault.behaviour;
    wrong.answer = fault.answer;
    wrong.packets = fault.packets;
    wrong.log = {{fault.cause, 1}};
    if (!command.complaint.empty())
        wrong.log[command.complaint] = fault.answer == Answer::normal ? 0 : 1;
    go_where_it_asks(driver, step, command.method);
    driver.take(wrong);
    if (fault.behaviour == "dies" || fault.behaviour == "is away")
        driver.take(transition("the radio's service is another process"));
    go_where_it_asks(driver, step, command.method);
    driver.take(step);
}

/** Nothing comes of it but the cause on the log. */
int take_events(Driver& driver) {
    const std::string long_text(mebibyte, 'y');
    const std::vector<std::pair<std::string, std::string>> events{
        {"()", "has the type (), expected (s)"},
        {"(7,)", "has the type (i), expected (s)"},
        {"('ready', 0)", "has the type (si), expected (s)"},
        {"(('ready', [{'ready': <'ready'>}]),)", "has the type ((saa{sv})), expected (s)"},
        {"('" + long_text + "',)", "Event Data: [" + long_text + "]"},
        {R"(('ready\n\u0001\u001b[31m',))", R"(Event Data: [ready\n\x01\x1b[31m])"},
        {R"(('\u202e<b>ready</b>&amp;',))", R"(Event Data: [\u202e<b>ready</b>&amp;])"}};
    for (const auto& [values, cause] : events) {
        const long is_text = cause.starts_with("Event") ? 1 : 0;
        const Log log{{cause, 1}, {"Event Data: [", is_text}, {", expected (s)", 1 - is_text}};
        driver.take({.name = "event: " + cause.substr(0, 100), .act = Act::event, .key = values, .log = log});
        driver.take(transition("the radio is ready"));
    }
    return static_cast<int>(events.size());
}

} // namespace

int take_faults(Driver& driver, int part) {
    int taken = 0;
    driver.begin();
    for (std::size_t index = 0; index < commands.size(); ++index)
        if (part == 0 || (index < commands.size() / 2) == (part == 1))
            for (const Fault& fault : faults_of(commands.at(index).method)) {
                take(driver, commands.at(index), fault);
                ++taken;
            }
    return taken + (part != 1 ? take_events(driver) : 0);
}

} // namespace model
