#include "faults.h"

#include "base/wait_until.h"
#include "client/client.h"
#include "ncp_host/contract.h"
#include "support/application_log.h"

#include <algorithm>
#include <array>

namespace walk {
namespace {

using namespace std::chrono_literals;
using simulator::this_television;

constexpr auto patience = 30s; // of a busy machine
constexpr std::size_t mebibyte = 1U << 20U;
/** Before and after the bus has given up the call. */
constexpr auto late = "late 1500";
constexpr auto too_late = "late 6000";

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

/** What becomes of the service itself. */
enum class Host : std::uint8_t {
    stays,
    ends,    /**< in the call */
    is_away, /**< before the call */
    returns  /**< there is no call, but another service */
};

struct Fault {
    std::string behaviour;
    std::string cause; /**< what the log says */
    Answer answer = Answer::refused;
    Host host = Host::stays;
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
    std::vector<Fault> faults{{"code -3", "Result = -3"},
                              {"error", error("Failed: " + method + " failed]")},
                              reply("()", "()"),
                              has_text ? reply("(0, '7')", "(is)") : reply("('0',)", "(s)"),
                              reply("((0, [{'0': <0>}]),)", "((iaa{sv}))"),
                              has_text ? reply("('" + long_text + "',)", "(s)")
                                       : reply("(0, '" + long_text + "')", "(is)"),
                              {late, "Result = 0", Answer::late},
                              {too_late, error("NoReply"), Answer::lost},
                              {"dies", error("NoReply"), Answer::refused, Host::ends},
                              {"", error("ServiceUnknown"), Answer::refused, Host::is_away},
                              {"", "", Answer::normal, Host::returns}};
    if (!has_text)
        return faults;
    const auto success = [&faults](const std::string& text, const std::string& packets) {
        faults.push_back(
            {"reply ('" + text + " packets', 0)", "Result = 0", Answer::normal, Host::stays, packets});
    };
    success("7 " + long_text, some_packets);
    for (const char* const text : {"\u202e7\u202c", "<b>7</b>&amp;", "\x01\x1b[31m7\x7f"})
        success(text, text);
    return faults;
}

void await(const simulator::LogFromNow& log, const std::string& text) {
    if (!simulator::wait_until([&] { return log.count(text) != 0; }, patience))
        throw Difference("  not on the log: " + text);
}

void expect_times(const simulator::LogFromNow& log, long times, const std::string& text) {
    if (const long seen = log.count(text); !text.empty() && seen != times)
        throw Difference("  " + std::to_string(seen) + " times on the log: " + text);
}

void kill_host() { this_television().call(simulator::television, "Kill", g_variant_new("(s)", "ncp_host")); }

void start_host() {
    const auto starts = [] {
        try {
            this_television().call(simulator::television, "Start", g_variant_new("(s)", "ncp_host"));
            return true;
        } catch (const simulator::Failure&) { // the television hears of its end a little later
            return false;
        }
    };
    if (!simulator::wait_until(starts, patience))
        throw Difference("  the radio's service does not start again");
}

const Transition& transition(const std::string& name) {
    return *std::ranges::find(transitions(), name, &Transition::name);
}

/** Whether it asks the radio for this, and what comes of it depends on the radio. */
bool asks(const State& state, Transition by, const std::string& method) {
    if (!by.can_happen(state))
        return false;
    const Outcome outcome = follow(state, by);
    by.answer = Answer::refused;
    return outcome.calls.size() == 1 && outcome.calls.front().starts_with(method + "(") &&
           follow(state, by).state != outcome.state;
}

void go_where_it_asks(Walk& walk, const Transition& by, const std::string& method) {
    const Choice may = [](const State& state, std::size_t step) {
        constexpr int dear = 400;
        const Transition& each = transitions()[step];
        return each.cost < dear && each.answer == Answer::normal && each.act <= Act::event &&
               each.can_happen(state);
    };
    const auto way = nearest(walk.state, may, [&](const State& state, std::size_t step) {
        return &transitions()[step] == &by && asks(state, by, method);
    });
    for (const std::size_t step : Steps(way.value().begin(), way.value().end() - 1))
        walk.take(step);
}

void be_ready(Walk& walk) {
    start_host();
    walk.hand.expect_new_host();
    walk.state.radio = Radio::off;
    const Outcome outcome = follow(walk.state, transition("the radio is ready"));
    walk.hand.expect(outcome.state, outcome.calls);
    walk.state = outcome.state;
}

/** The command of a step goes wrong. */
void go_wrong(Walk& walk, Transition step, const Command& command, const Fault& fault) {
    const bool can_be_asked = fault.host == Host::stays;
    step.answer = fault.answer;
    const Outcome outcome = follow(walk.state, step);
    const simulator::LogFromNow log;
    if (fault.host == Host::is_away)
        kill_host();
    else
        let_host_answer(this_television(), command.method, fault.behaviour);
    walk.hand.act(walk.state, step);
    await(log, fault.cause);
    walk.hand.expect(outcome.state, can_be_asked ? std::optional(outcome.calls) : std::nullopt,
                     fault.packets);
    expect_times(log, 1, fault.cause);
    const bool fails = fault.answer == Answer::refused || fault.answer == Answer::lost;
    expect_times(log, fails ? 1 : 0, command.complaint);
    if (can_be_asked)
        let_host_answer(this_television(), command.method, "normal");
    walk.state = outcome.state;
}

void take(Walk& walk, const Command& command, const Fault& fault) {
    const Transition& step = transition(command.method == "ember_start" ? "the radio is ready" : "OK");
    go_where_it_asks(walk, step, command.method);
    if (fault.host == Host::returns)
        kill_host();
    else
        go_wrong(walk, step, command, fault);
    if (fault.host != Host::stays)
        be_ready(walk);
    go_where_it_asks(walk, step, command.method);
    walk.take(static_cast<std::size_t>(&step - transitions().data()));
}

/** Nothing comes of it but the cause on the log. */
void take_event(Walk& walk, const std::string& values, const std::string& cause) {
    const simulator::LogFromNow log;
    send_event(this_television(), values);
    await(log, cause);
    walk.hand.expect(walk.state, std::vector<std::string>{});
    expect_times(log, 1, cause);
    if (log.count("Event Data: [") + log.count(", expected (s)") != 1)
        throw Difference("  the log tells of another event");
    walk.take(static_cast<std::size_t>(&transition("the radio is ready") - transitions().data()));
}

int take_events(Walk& walk) {
    const std::string long_text(mebibyte, 'y');
    const std::vector<std::pair<std::string, std::string>> events{
        {"()", "has the type (), expected (s)"},
        {"(7,)", "has the type (i), expected (s)"},
        {"('ready', 0)", "has the type (si), expected (s)"},
        {"(('ready', [{'ready': <'ready'>}]),)", "has the type ((saa{sv})), expected (s)"},
        {"('" + long_text + "',)", "Event Data: [" + long_text + "]"},
        {R"(('ready\n\u0001\u001b[31m',))", R"(Event Data: [ready\n\x01\x1b[31m])"},
        {R"(('\u202e<b>ready</b>&amp;',))", R"(Event Data: [\u202e<b>ready</b>&amp;])"}};
    for (const auto& [values, cause] : events)
        take_event(walk, values, cause);
    return static_cast<int>(events.size());
}

} // namespace

int take_faults(Walk& walk, int part) {
    int taken = 0;
    walk.begin();
    for (std::size_t index = 0; index < commands.size(); ++index)
        if (part == 0 || (index < commands.size() / 2) == (part == 1))
            for (const Fault& fault : faults_of(commands.at(index).method)) {
                const std::string name = commands.at(index).method + ": " + fault.behaviour.substr(0, 30) +
                                         " " + fault.cause.substr(0, 100);
                try {
                    take(walk, commands.at(index), fault);
                } catch (const Difference& difference) {
                    throw Difference("  at " + name + "\n" + difference.what());
                }
                ++taken;
            }
    return taken + (part != 1 ? take_events(walk) : 0);
}

} // namespace walk
