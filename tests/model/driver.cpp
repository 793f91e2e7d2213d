#include "driver.h"

#include "base/strings.h"
#include "base/wait_until.h"
#include "support/television.h"

#include <X11/XKBlib.h>

#include <filesystem>
#include <regex>

namespace model {
namespace {

using namespace std::chrono_literals;
using simulator::this_television;
using simulator::wait_until;

constexpr auto busy_machine_limit = 30s;

const std::vector<std::string> command{VELMORA_PROGRAM};

/** @return whether the call succeeded. */
bool call_television(const char* method, const char* argument) {
    try {
        this_television().call(simulator::television, method, g_variant_new("(s)", argument));
        return true;
    } catch (const simulator::Failure&) {
        return false;
    }
}

/** Formats a screen, calls to the radio service, and how often texts were logged. */
std::string format(const std::string& screen, const std::vector<std::string>& calls, const Log& log) {
    std::string text = screen.substr(0, 1000) + "\n  calls: " + simulator::joined(calls, ", ");
    for (const auto& [logged, times] : log)
        text += "\n  logged " + std::to_string(times) + " times: " + logged.substr(0, 1000);
    return text;
}

/** A widget's text and states. */
std::string describe(const simulator::Widget& widget) {
    static const std::regex count("^(Received Packets: )[1-9].*"); // depends on the simulated traffic
    std::string text = std::regex_replace(widget.name, count, "$1" + some_packets) +
                       (widget.focusable ? "*" : "") + (widget.chosen ? " chosen" : "");
    if (widget.role == "push button" && widget.enabled != widget.focusable)
        text += widget.enabled ? " enabled" : " disabled";
    if (widget.value && widget.name != std::to_string(static_cast<int>(widget.value->current)))
        text += "=" + std::to_string(widget.value->current);
    return widget.focused ? "[" + text + "]" : text;
}

} // namespace

Driver::Driver() : application_(std::in_place, command, simulator::written_to(log_.path())) {
    XkbSetAutoRepeatRate(display_.get(), XkbUseCoreKbd, 250, 30);
    const std::string difference = await({}, {});
    require(difference.empty(), difference);
}

void Driver::take(const Transition& by) {
    taken_.push_back(by.name);
    const Outcome outcome = follow(state_, by);
    log_.skip();
    const auto repair = inject(by, outcome.calls);
    act(by);
    if (by.behaviour.starts_with("late")) {
        std::this_thread::sleep_for(80ms);
        for (const char* const key : {"OK", "Up"}) // must be dropped: the screen is frozen
            simulator::press_key(display_, key);
    }
    if (outcome.ends) {
        require(application_->wait_for_end(busy_machine_limit) == 0,
                "the application did not exit with status 0: " + application_->state());
        require(simulator::radio_state(this_television()).find("'mode': <'off'>") != std::string::npos,
                "the application exited without turning the radio off");
        seen_.clear();
        application_.emplace(command, simulator::written_to(log_.path()));
    }
    state_ = outcome;
    const bool has_host = by.behaviour != "dies" && by.behaviour != "is away";
    const auto calls = has_host ? outcome.calls : std::vector<std::string>{};
    std::string difference = await(calls, outcome.log);
    // If a busy machine does not run the application for 250 ms, the press is dropped, as in a freeze. The step is then
    // repeated, at most three times in a run.
    if (!difference.empty() && by.act == Act::press && by.times == 1 && calls.empty() &&
        log_.count("dropped a press") > 0 && ++stalls_ <= 3) {
        act(by);
        difference = await(calls, outcome.log);
    }
    require(difference.empty(), difference);
    repair();
}

std::function<void()> Driver::inject(const Transition& by, const std::vector<std::string>& calls) {
    if (by.behaviour == "is away") {
        call_television("Kill", "ncp_host");
    } else if (by.behaviour.starts_with("without ")) {
        const std::string program = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/" + by.behaviour.substr(8);
        std::filesystem::rename(program, program + ".away");
        return [this, program] {
            // On a busy machine the background shell may look for the program only after the screen has changed.
            const auto is_complaint = [](const auto& line) { return line.ends_with("not found"); };
            (void)wait_until([&] { return std::ranges::any_of(log_.lines(), is_complaint); }, 2s);
            std::filesystem::rename(program + ".away", program);
        };
    } else if (by.behaviour != "normal") {
        const std::string method = calls.front().substr(0, calls.front().find('('));
        simulator::set_host_behaviour(this_television(), method, by.behaviour);
        if (by.behaviour != "dies")
            return [method] { simulator::set_host_behaviour(this_television(), method, "normal"); };
    }
    return [] {};
}

void Driver::act(const Transition& by) {
    switch (by.act) {
    case Act::press:
        for (int time = 0; time < by.times; ++time)
            simulator::press_key(display_, by.key);
        return;
    case Act::hold:
        return simulator::press_key(display_, by.key, by.times > 1 ? 1100ms : 400ms);
    case Act::activate: // the screen shows whether the action was refused
        if (const auto widget = seen_.find(text_of(state_, by.key)); widget != seen_.end())
            reader_.activate(widget->second);
        return;
    case Act::event:
        return simulator::send_event(this_television(), by.key);
    case Act::change_language:
        return require(call_television("SetLanguage", state_.mirrored ? "en_GB.utf8" : "ar_AE.utf8"),
                       "the language cannot be set");
    case Act::launch_again:
        return require(simulator::Process(command, simulator::written_to("/tmp/second.log"))
                               .wait_for_end(busy_machine_limit) == 0,
                       "a second launch did not exit with status 0");
    case Act::cover: {
        const simulator::OtherWindow other;
        return require(wait_until([this] { return !reader_.read("velmora").in_front(); }, busy_machine_limit),
                       "the application keeps the keyboard");
    }
    case Act::restart_service:
        call_television("Kill", "ncp_host"); // the service may have exited already
        calls_seen_ = 0;
        // The simulator notices the service's exit a little later.
        return require(wait_until([] { return call_television("Start", "ncp_host"); }, busy_machine_limit),
                       "the radio service did not restart");
    case Act::terminate:
        return application_->terminate();
    case Act::close:
        return simulator::close_front_window(display_);
    case Act::destroy:
        return simulator::destroy_front_window(display_);
    }
}

std::string Driver::look() {
    const simulator::Screen screen = reader_.read("velmora");
    if (screen.widgets().empty())
        return screen.description();
    for (const simulator::Widget& widget : screen.covered())
        seen_.insert_or_assign(widget.name, widget);
    std::string line = screen.in_front() && !other_.has_keys() ? "in front:" : "behind:";
    for (const simulator::Widget& widget : screen.widgets()) {
        line.append(" | ").append(describe(widget));
        if (widget.role == "push button")
            seen_.insert_or_assign(widget.name, widget);
    }
    // Uses the places where these buttons were last seen, since a popup may cover them now.
    return line + (seen_["Exit"].x < seen_["TX Test"].x ? " | from the right" : "");
}

/** Returns the calls since the previous step; none while the service is not running. */
std::vector<std::string> Driver::new_calls() const {
    try {
        const auto all = simulator::host_calls(this_television());
        return {all.begin() + std::min(calls_seen_, std::ssize(all)), all.end()};
    } catch (const simulator::Failure&) {
        return {};
    }
}

std::string Driver::await(const std::vector<std::string>& calls, const Log& texts) {
    const std::string wanted = format(rendering(state_), calls, texts);
    std::string seen;
    const auto is_as_wanted = [&] {
        Log logged;
        for (const auto& [text, times] : texts)
            logged[text] = log_.count(text);
        seen = format(look(), new_calls(), logged);
        return seen == wanted;
    };
    // Looks again after reading the calls, since the page may have changed meanwhile.
    if (!wait_until([&] { return is_as_wanted() && look() == rendering(state_); }, busy_machine_limit))
        return "expected: " + wanted + "\nseen:     " + seen;
    calls_seen_ += std::ssize(calls);
    return {};
}

void Driver::require(bool is_met, const std::string& difference) const {
    if (is_met)
        return;
    simulator::take_picture("/var/log/simulator/last_picture.png");
    throw std::runtime_error("difference after these steps:\n  " + simulator::joined(taken_, "\n  ") + "\n" +
                             difference + "\nLogs and the last screenshot are in build/logs.");
}

} // namespace model
