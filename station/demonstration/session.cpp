#include "session.h"

#include "operator/ncp_host_record.h"

#include <algorithm>
#include <iostream>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 30s; // a test's start brings up three programs, one after the other
constexpr auto end_patience = 15s;
constexpr int most_steps_to_a_widget = 8;

void say(const std::string& key, const std::string& what) {
    constexpr std::size_t column = 12;
    std::cout << key << std::string(key.size() < column ? column - key.size() : 1, ' ') << what << std::endl;
}

bool has_focus(const Screen& screen, const std::string& name) {
    return screen.focused() != nullptr && screen.focused()->name == name;
}

std::filesystem::path made(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    return folder;
}

} // namespace

Session::Session(const std::string& program, const std::filesystem::path& pictures)
    : pictures_(made(pictures)), operator_(std::filesystem::path(program).filename(), patience),
      application_({program}, pictures_ / "application.log") {
    operator_.follow(application_);
}

void Session::see_first_page() {
    const Screen& screen = operator_.wait_for_focus("TX Test");
    const Widget* const second_tab = screen.find("RX Test");
    mirrored_ = second_tab != nullptr && second_tab->x < screen.focused()->x;
    say("start", screen.description());
}

void Session::press(const std::string& key, const std::string& name) {
    operator_.press(key);
    say(key, operator_.wait_for_focus(name).description());
}

void Session::press_for_number(const std::string& key, const std::string& label) {
    operator_.press(key);
    const auto has_number = [&label](const Widget& widget) {
        const std::string number = widget.name.starts_with(label) ? widget.name.substr(label.size()) : "";
        return !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
    };
    say(key, operator_
                 .wait_until(
                     "'" + label + "' with a number",
                     [&](const Screen& screen) { return std::ranges::any_of(screen.widgets(), has_number); })
                 .description());
}

void Session::open_picker(const std::string& title, int value) {
    operator_.press("Return");
    operator_.wait_for(title);
    say("Return", operator_.wait_for_value(value).description());
}

void Session::choose(const std::string& title, int value) {
    operator_.press("Return");
    operator_.wait_until_gone(title);
    say("Return", operator_.wait_for_focus(std::to_string(value)).description());
}

void Session::step(const std::string& key, int times, int value) {
    operator_.press(key, times);
    say(key + " x" + std::to_string(times), operator_.wait_for_value(value).description());
}

const Screen& Session::move(const std::string& key) {
    const std::string before = operator_.screen().description();
    operator_.press(key);
    const Screen& screen =
        operator_.wait_until("the focus to move with " + key, [&before](const Screen& now) {
            return now.focused() != nullptr && now.description() != before;
        });
    say(key, screen.description());
    return screen;
}

void Session::go(const std::string& key, const std::string& name) {
    for (int steps = 0; steps < most_steps_to_a_widget; ++steps)
        if (has_focus(move(key), name))
            return;
    throw NotSeen(key + " does not lead to '" + name + "'");
}

void Session::go_to_header(const std::string& name) {
    const auto is_in_header = [](const Screen& screen) {
        const auto& widgets = screen.widgets();
        const Widget* const focused = screen.focused();
        return focused != nullptr && !widgets.empty() &&
               focused->y < widgets.front().y + widgets.front().height;
    };
    while (!is_in_header(operator_.screen()))
        move("Up");
    if (!has_focus(operator_.screen(), name))
        go(onward(), name);
}

void Session::see(const std::string& text) { say("", operator_.wait_for(text).description()); }

void Session::page(const std::string& name) {
    ++pages_;
    const std::string file = (pages_ < 10 ? "0" : "") + std::to_string(pages_) + "-" + name + ".png";
    operator_.picture(pictures_ / file);
    say("picture", file);
}

void Session::expect_focusable(const std::string& name, bool focusable) {
    operator_.wait_until("'" + name + (focusable ? "' to take the focus" : "' to refuse the focus"),
                         [&](const Screen& screen) {
                             const Widget* const widget = screen.find(name);
                             return widget != nullptr && widget->focusable == focusable;
                         });
    say("", "'" + name + (focusable ? "' can be changed" : "' cannot be changed"));
}

void Session::expect_asked(const std::string& call) {
    expected_.push_back(call);
    std::vector<std::string> asked;
    operator_.wait_until("the NCP host to be asked " + call, [&](const Screen&) {
        asked = asked_of_ncp_host();
        return asked.size() >= expected_.size();
    });
    if (asked != expected_)
        throw NotSeen("the NCP host was asked " + asked.back() + ", not " + call);
    say("NCP host", call);
}

void Session::leave() {
    go_to_header("Exit");
    press("Return", "Cancel");
    for (const char* const text : {"Exit App", "Do you want to exit ?", "Yes"})
        operator_.wait_for(text);
    page("exit");
    press(backward(), "Yes");
    operator_.press("Return");
    const std::optional<int> status = application_.wait_for_end(end_patience);
    if (!status)
        throw NotSeen("the application still runs; the screen shows: " + operator_.screen().description());
    say("Return", "the application ended with status " + std::to_string(*status));
    if (*status != 0)
        throw NotSeen("the application's exit status is not 0");
    const std::vector<std::string> left = running_processes({"cpcd", "socat", "zigbeed"});
    if (!left.empty())
        throw NotSeen(left.front() + " still runs");
    say("", "no program of the radio stack is left");
}

std::string Session::application_state() {
    const std::optional<int> status = application_.wait_for_end(0ms);
    return status ? "the application has ended with status " + std::to_string(*status)
                  : "the application runs";
}

} // namespace station
