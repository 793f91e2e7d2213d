#include "hand.h"

#include "base/strings.h"
#include "base/wait_until.h"
#include "support/windows.h"

#include <X11/XKBlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

namespace walk {
namespace {

using namespace std::chrono_literals;
using simulator::this_television;
namespace fs = std::filesystem;

constexpr auto patience = 30s;           // of a busy machine
constexpr auto patience_of_a_trial = 4s; // a start without the relay takes three
constexpr auto look_interval = 10ms;
constexpr auto repeat_after = 250ms;
constexpr auto repeat_interval = 30ms;
constexpr auto hold_time = 400ms;
constexpr auto hold_time_to_a_limit = 1100ms;
constexpr auto late_key_after = 80ms;
constexpr auto was_started = "/tmp/silent_program_was_started";
const fs::path programs = "/opt/usr/apps/com.kelsor.tv.brimhub/bin";

/** Does something when it goes. */
class AtEnd {
public:
    explicit AtEnd(std::function<void()> action) : action_(std::move(action)) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { action_(); }

private:
    std::function<void()> action_;
};

/** A program of the radio is not there, or ends at once. */
AtEnd spoil(BringUp how) {
    if (how == BringUp::ready)
        return AtEnd([] {});
    const fs::path program = programs / (how == BringUp::silent ? "zigbeed" : "socat");
    const fs::path away = program.string() + ".away";
    fs::rename(program, away);
    if (how == BringUp::silent) {
        fs::remove(was_started);
        std::ofstream(program) << "#!/bin/sh\ntouch " << was_started << "\n";
        fs::permissions(program, fs::perms::owner_all);
    }
    return AtEnd([program, away] {
        // The application starts it in the background, on a busy machine later than the screen says so.
        (void)simulator::wait_until([&] { return !fs::exists(program) || fs::exists(was_started); }, 2s);
        std::error_code not_there;
        fs::rename(away, program, not_there);
    });
}

/** The method of a call is answered in another way. */
AtEnd answer(const std::vector<std::string>& calls, const Transition& transition) {
    if (transition.answer == Answer::normal || calls.empty())
        return AtEnd([] {});
    const std::string method = calls.front().substr(0, calls.front().find('('));
    let_host_answer(this_television(), method, transition.behaviour);
    return AtEnd([method] { let_host_answer(this_television(), method, "normal"); });
}

/** How many packets, once there are some, is the traffic's affair. */
std::string without_count(const std::string& text) {
    constexpr std::string_view label = "Received Packets: ";
    const auto first_digit = text.starts_with(label) ? text.find_first_of("123456789") : std::string::npos;
    return first_digit == label.size() ? std::string(label) + some_packets : text;
}

/** What the screen says, each with what it can do. */
std::vector<std::string> items(const simulator::Screen& screen) {
    std::vector<std::string> items;
    for (const simulator::Widget& widget : screen.widgets()) {
        std::string text =
            without_count(widget.name) + (widget.focusable ? "*" : "") + (widget.chosen ? " chosen" : "");
        if (widget.role == "push button" && widget.enabled != widget.focusable)
            text += widget.enabled ? " enabled" : " disabled";
        if (widget.value && widget.name != std::to_string(static_cast<int>(widget.value->current)))
            text += "=" + std::to_string(widget.value->current);
        items.push_back(widget.focused ? "[" + text + "]" : text);
    }
    return items;
}

} // namespace

Hand::Hand(std::string program)
    : program_(std::move(program)), display_(simulator::open_display()), reader_(1s) {
    XkbSetAutoRepeatRate(display_.get(), XkbUseCoreKbd, repeat_after.count(), repeat_interval.count());
}

void Hand::begin() {
    if (application_ && application_->number() != 0) {
        application_->terminate(); // in order, or the radio's programs stay
        (void)application_->wait_for_end(patience);
    }
    application_.reset();
    set_language(false);
    calls_seen_ = asked_of_host(this_television()).size();
    start_application();
    expect(State{}, std::vector<std::string>{});
}

void Hand::start_application() {
    seen_.clear();
    application_.emplace(std::vector<std::string>{program_}, simulator::written_to(log));
}

void Hand::expect_end(const simulator::LogFromNow& said, Act act) {
    const auto status = application_->wait_for_end(patience);
    if (!status)
        throw Difference("the application does not end");
    if (*status != 0)
        throw Difference("the application ends with status " + std::to_string(*status));
    if (simulator::radio_state(this_television()).mode != "off")
        throw Difference("the application ends, and the radio is not off");
    const std::string reason = act == Act::terminate ? "SIGTERM"
                               : act == Act::close   ? "the window was closed"
                               : act == Act::destroy ? "the window has gone"
                                                     : "the application asked to";
    if (said.count("the main loop ends: " + reason) != 1)
        throw Difference("the application does not say that it ends: " + reason);
}

void Hand::take(const State& from, const Transition& transition) {
    const Outcome outcome = follow(from, transition);
    {
        const AtEnd restored = spoil(transition.bring_up);
        const AtEnd answering = answer(outcome.calls, transition);
        const simulator::LogFromNow said;
        act(from, transition);
        if (transition.answer == Answer::late) {
            std::this_thread::sleep_for(late_key_after);
            for (const char* const key : {"OK", "Up"}) // meant for a screen that stands still
                simulator::press_key(display_, key);
        }
        if (outcome.ends) {
            expect_end(said, transition.act);
            start_application();
        }
        expect(outcome.state, outcome.calls);
    }
    if (afterwards_ > 0ms) {
        std::this_thread::sleep_for(afterwards_);
        expect(outcome.state, std::vector<std::string>{});
    }
}

void Hand::act(const State& from, const Transition& transition) {
    switch (transition.act) {
    case Act::press:
        for (int time = 0; time < transition.times; ++time)
            simulator::press_key(display_, transition.key);
        break;
    case Act::hold:
        simulator::press_key(display_, transition.key,
                             transition.times > 1 ? hold_time_to_a_limit : hold_time);
        break;
    case Act::activate:
        activate(name_of(from, transition.spot));
        break;
    case Act::event:
        send_event(this_television(), "('" + transition.key + "',)");
        break;
    case Act::language:
        set_language(!from.mirrored);
        break;
    case Act::launch: {
        simulator::Process second({program_}, simulator::written_to("/tmp/second.log"));
        if (second.wait_for_end(patience) != 0)
            throw Difference("a second launch does not end with status 0");
        break;
    }
    case Act::interrupt: {
        const simulator::OtherWindow other;
        if (!simulator::wait_until([this] { return !reader_.read("velmora").in_front(); }, patience))
            throw Difference("the application keeps the keyboard");
        break;
    }
    case Act::terminate:
        application_->terminate();
        break;
    case Act::close:
        simulator::close_front_window(display_);
        break;
    case Act::destroy:
        simulator::destroy_front_window(display_);
        break;
    }
}

/** Whether that was right is seen by what comes of it. */
void Hand::activate(const std::string& name) {
    const auto widget = seen_.find(name);
    if (widget == seen_.end())
        return;
    try {
        reader_.activate(widget->second);
    } catch (const std::runtime_error&) { // refused
    }
}

void Hand::set_language(bool mirrored) {
    const char* const language = mirrored ? "ar_AE.utf8" : "en_GB.utf8";
    this_television().call(simulator::television, "SetLanguage", g_variant_new("(s)", language));
}

std::string Hand::look() {
    const simulator::Screen screen = reader_.read("velmora");
    if (screen.widgets().empty())
        return screen.description();
    for (const simulator::Widget& widget : screen.covered())
        seen_.insert_or_assign(widget.name, widget);
    for (const simulator::Widget& widget : screen.widgets())
        if (widget.role == "push button")
            seen_.insert_or_assign(widget.name, widget);
    std::string line = screen.in_front() && !other_.has_keys() ? "in front:" : "behind:";
    shown_ = items(screen);
    for (const std::string& item : shown_)
        line.append(" | ").append(item);
    return line + (seen_["Exit"].x < seen_["TX Test"].x ? " | from the right" : ""); // covered or not
}

/** Looks once more: what came before that has been dealt with, and a page that looks like the last one is there. */
bool Hand::stays(bool mirrored) {
    const simulator::Screen screen = reader_.read("velmora", simulator::Places::unasked);
    for (const simulator::Widget& widget : screen.widgets())
        if (const auto seen = seen_.find(widget.name); seen != seen_.end())
            seen->second.accessible = widget.accessible;
    // Without places in the order of the tree, which is that of reading, whatever the direction.
    return mirrored ? std::ranges::is_permutation(items(screen), shown_) : items(screen) == shown_;
}

std::vector<std::string> Hand::new_calls() const {
    std::vector<std::string> calls = asked_of_host(this_television());
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(calls_seen_));
    return calls;
}

void Hand::expect(const State& state, const std::optional<std::vector<std::string>>& calls,
                  const std::string& packets) {
    constexpr std::size_t longest_line = 1000;
    const auto said = [](const auto& asked) {
        return asked.empty() ? "nothing" : simulator::joined(asked, ", ");
    };
    const std::string wanted = appearance(state, packets);
    const auto deadline =
        std::chrono::steady_clock::now() + (afterwards_ > 0ms ? patience_of_a_trial : patience);
    for (;;) {
        const std::string seen = look();
        const bool is_shown = seen == wanted;
        const bool is_late = std::chrono::steady_clock::now() >= deadline;
        const auto asked = calls && (is_shown || is_late) ? new_calls() : std::vector<std::string>{};
        const bool is_asked = asked == calls.value_or(asked);
        if (is_shown && is_asked && stays(state.mirrored)) // after the calls
            break;
        if (is_late)
            throw Difference("  expected " + wanted.substr(0, longest_line) + "\n  seen     " +
                             seen.substr(0, longest_line) +
                             (is_asked ? "" : "\n  asked    " + said(asked) + "; expected " + said(*calls)));
        std::this_thread::sleep_for(look_interval);
    }
    calls_seen_ += calls ? calls->size() : 0;
}

} // namespace walk
