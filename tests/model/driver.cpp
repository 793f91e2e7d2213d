#include "driver.h"

#include "base/strings.h"
#include "base/wait_until.h"
#include "support/television.h"

#include <X11/XKBlib.h>

#include <algorithm>
#include <filesystem>
#include <regex>

namespace model {
namespace {

using namespace std::chrono_literals;
using simulator::this_television;
using simulator::wait_until;
using Calls = std::vector<std::string>;

constexpr auto busy_machine_limit = 30s;
constexpr auto repeat_after = 250ms;
constexpr auto repeat_interval = 30ms;
constexpr auto hold_time = 400ms;
constexpr auto hold_time_to_a_limit = 1100ms;
constexpr auto late_key_after = 80ms;

void call_television(const char* method, const char* argument) {
    this_television().call(simulator::television, method, g_variant_new("(s)", argument));
}

bool succeeds(const std::function<void()>& action) {
    try {
        action();
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

void set_language(bool mirrored) { call_television("SetLanguage", mirrored ? "ar_AE.utf8" : "en_GB.utf8"); }

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

Driver::Driver(std::string program)
    : program_(std::move(program)), display_(simulator::open_display()), limit_(busy_machine_limit) {
    XkbSetAutoRepeatRate(display_.get(), XkbUseCoreKbd, repeat_after.count(), repeat_interval.count());
}

void Driver::begin() {
    std::exchange(repair_, [] {})();
    if (application_ && application_->number() != 0) {
        application_->terminate(); // otherwise the radio programs keep running
        (void)application_->wait_for_end(busy_machine_limit);
    }
    set_language(false);
    state_ = State{};
    taken_.clear();
    calls_seen_ = simulator::host_calls(this_television()).size();
    start_application();
    expect({});
}

void Driver::start_application() {
    seen_.clear();
    application_.emplace(std::vector{program_}, simulator::written_to(simulator::ApplicationLog().path()));
}

void Driver::take(const Transition& by) {
    taken_.push_back(by);
    const Outcome outcome = follow(state_, by);
    log_.skip();
    inject(by, outcome.calls);
    act(by);
    if (by.behaviour.starts_with("late")) {
        std::this_thread::sleep_for(late_key_after);
        for (const char* const key : {"OK", "Up"}) // must be dropped: the screen is frozen
            simulator::press_key(display_, key);
    }
    if (outcome.ends) {
        if (application_->wait_for_end(busy_machine_limit) != 0)
            throw Difference("  the application did not exit with status 0: " + application_->state());
        if (simulator::radio_state(this_television()).find("'mode': <'off'>") == std::string::npos)
            throw Difference("  the application exited without turning the radio off");
        start_application();
    }
    state_ = outcome.state;
    const bool host_ends = by.behaviour == "dies" || by.behaviour == "is away";
    const Calls calls = host_ends ? Calls{} : outcome.calls;
    try {
        expect(calls, outcome.log);
    } catch (const Difference&) {
        // A machine that is too busy to run the application for 250 ms has frozen its screen, too.
        constexpr int most_stalls = 3;
        if (by.act != Act::press || by.times > 1 || !calls.empty() || log_.count("dropped a press") == 0 ||
            ++stalls_ > most_stalls)
            throw;
        act(by);
        expect(calls, outcome.log);
    }
    std::exchange(repair_, [] {})();
}

void Driver::inject(const Transition& by, const Calls& calls) {
    namespace fs = std::filesystem;
    if (!by.missing.empty()) {
        const fs::path program = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/" + by.missing;
        const fs::path away = program.string() + ".away";
        fs::rename(program, away);
        repair_ = [this, program, away] {
            // On a busy machine the background shell may look for the program only after the screen has changed.
            const auto is_complaint = [](const auto& line) { return line.ends_with("not found"); };
            (void)wait_until([&] { return std::ranges::any_of(log_.lines(), is_complaint); }, 2s);
            fs::rename(away, program);
        };
    } else if (by.behaviour == "is away") {
        call_television("Kill", "ncp_host");
    } else if (by.behaviour != "normal") {
        const std::string method = calls.front().substr(0, calls.front().find('('));
        simulator::set_host_behaviour(this_television(), method, by.behaviour);
        if (by.behaviour != "dies")
            repair_ = [method] { simulator::set_host_behaviour(this_television(), method, "normal"); };
    }
}

void Driver::act(const Transition& by) {
    switch (by.act) {
    case Act::press:
        for (int time = 0; time < by.times; ++time)
            simulator::press_key(display_, by.key);
        return;
    case Act::hold:
        return simulator::press_key(display_, by.key, by.times > 1 ? hold_time_to_a_limit : hold_time);
    case Act::activate: // the screen shows whether it was refused
        if (const auto widget = seen_.find(name_of(state_, by.key)); widget != seen_.end())
            reader_.activate(widget->second);
        return;
    case Act::event:
        return simulator::send_event(this_television(), by.key);
    case Act::language:
        return set_language(!state_.mirrored);
    case Act::launch:
        if (simulator::Process({program_}, simulator::written_to("/tmp/second.log")).wait_for_end(limit_) !=
            0)
            throw Difference("  a second launch did not exit with status 0");
        return;
    case Act::interrupt: {
        const simulator::OtherWindow other;
        if (!wait_until([this] { return !reader_.read("velmora").in_front(); }, limit_))
            throw Difference("  the application keeps the keyboard");
        return;
    }
    case Act::replace:
        return replace_host();
    case Act::terminate:
        return application_->terminate();
    case Act::close:
        return simulator::close_front_window(display_);
    case Act::destroy:
        return simulator::destroy_front_window(display_);
    }
}

void Driver::replace_host() {
    (void)succeeds([] { call_television("Kill", "ncp_host"); }); // it may have exited already
    calls_seen_ = 0;
    // The simulator notices its exit a little later.
    if (!wait_until([] { return succeeds([] { call_television("Start", "ncp_host"); }); }, limit_))
        throw Difference("  the radio service did not restart");
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
    // A popup may cover these buttons.
    return line + (seen_["Exit"].x < seen_["TX Test"].x ? " | from the right" : "");
}

/** Returns no calls while the service is not running. */
Calls Driver::new_calls() const {
    Calls calls;
    (void)succeeds([&] { calls = simulator::host_calls(this_television()); });
    calls.erase(calls.begin(),
                calls.begin() + std::min(std::ssize(calls), static_cast<std::ptrdiff_t>(calls_seen_)));
    return calls;
}

void Driver::expect(const Calls& calls, const Log& texts) {
    constexpr std::size_t longest_line = 1000;
    const std::string wanted = rendering(state_);
    std::string seen;
    const auto is_logged = [this](const auto& text) { return log_.count(text.first) == text.second; };
    // Look again after the calls, since the page may still be about to change.
    const auto is_as_wanted = [&] {
        return (seen = look()) == wanted && new_calls() == calls && std::ranges::all_of(texts, is_logged) &&
               look() == wanted;
    };
    if (!wait_until(is_as_wanted, limit_)) {
        std::string difference = "  expected " + wanted.substr(0, longest_line) + "\n  seen     " +
                                 seen.substr(0, longest_line) + "\n  expected calls " +
                                 simulator::joined(calls, ", ") + "\n  seen           " +
                                 simulator::joined(new_calls(), ", ");
        for (const auto& [text, times] : texts)
            difference += "\n  logged " + std::to_string(log_.count(text)) + " times, expected " +
                          std::to_string(times) + ": " + text.substr(0, longest_line);
        throw Difference(difference);
    }
    calls_seen_ += calls.size();
}

} // namespace model
