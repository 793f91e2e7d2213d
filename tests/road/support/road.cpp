#include "support/road.h"

#include "common/bus_object.h"
#include "common/texts.h"
#include "support/evidence.h"

#include <algorithm>
#include <thread>

namespace {

using namespace std::chrono_literals;
using station::Screen;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

constexpr auto look_interval = 20ms;
constexpr auto patience = 10s;
constexpr int most_steps_to_a_widget = 8;

bool has_focus(const Screen& screen, const std::string& name) {
    return screen.focused() != nullptr && screen.focused()->name == name;
}

} // namespace

void Sitting::SetUp() { asked_before_ = asked_so_far().size(); }

void Sitting::TearDown() {
    if (HasFailure())
        take_last_picture();
    for (const std::string& method : changed_methods_)
        change_answer(method, "normal");
    if (application_ && application_->number() != 0) {
        application_->terminate();
        expect_orderly_end();
    }
    EXPECT_THAT(log_.complaints_of_libraries(), IsEmpty());
    if (HasFailure())
        std::cerr << "The end of the application's log:\n"
                  << log_.end() << "Logs, keys and the last picture are in "
                  << keep_evidence({log_.path(), last_picture}, keys_pressed()) << '\n';
}

void Sitting::switch_on() {
    std::filesystem::remove(log_.path()); // of an earlier run
    application_.emplace(std::vector<std::string>{VELMORA_PROGRAM}, station::written_to(log_.path()));
}

// A connection for each: one that is held would end this process with its bus.
station::Remote Sitting::television() { return station::Remote(station::connect_to_system_bus()); }

std::string Sitting::radio(const char* what) {
    const station::Value state = station::first_of(television().call(station::radio_module, "State"));
    const station::Value value(g_variant_lookup_value(state.get(), what, nullptr));
    return value ? station::printed(value.get()) : "";
}

void Sitting::let_host_emit(const std::string& event) {
    television().call(station::ncp_host, "Emit", g_variant_new("(s)", event.c_str()));
}

void Sitting::change_answer(const std::string& method, const std::string& behaviour) {
    television().call(station::ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

std::vector<std::string> Sitting::asked_so_far() {
    return station::texts_of(station::first_of(television().call(station::ncp_host, "Asked")).get());
}

std::vector<std::string> Sitting::asked() const {
    std::vector<std::string> calls = asked_so_far();
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(asked_before_));
    return calls;
}

void Sitting::let_host_answer(const std::string& method, const std::string& behaviour) {
    changed_methods_.push_back(method);
    change_answer(method, behaviour);
}

void Sitting::expect_soon(const std::string& what, const std::function<bool()>& has_come) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!has_come()) {
        if (std::chrono::steady_clock::now() >= deadline)
            throw station::NotSeen("waited for " + what);
        std::this_thread::sleep_for(look_interval);
    }
}

void Sitting::expect_orderly_end(const std::vector<std::string>& survivors) {
    EXPECT_EQ(application_->wait_for_end(patience), 0);
    EXPECT_THAT(station::running_processes({"cpcd", "socat", "zigbeed"}),
                UnorderedElementsAreArray(survivors));
    EXPECT_THAT(station::zombies(), IsEmpty());
}

void Road::take_last_picture() {
    try {
        operator_.picture(last_picture);
    } catch (const std::runtime_error&) { // the screen itself may be what failed
    }
}

void Road::open_application() {
    switch_on();
    operator_.follow(application());
    operator_.wait_for_focus("TX Test");
}

void Road::open_tx_test() {
    open_application();
    enter("Start TX Test");
    enter("Set Power");
    expect_asked({"ember_start(0)"});
}

void Road::open_rx_test() {
    open_application();
    go("Right", "RX Test");
    enter("Start RX Test");
    enter("11");
    expect_asked({"ember_start(1)"});
}

void Road::enter(const std::string& name) {
    operator_.press("Return");
    operator_.wait_for_focus(name);
}

void Road::move(const std::string& key) {
    const std::string before = operator_.screen().description();
    operator_.press(key);
    operator_.wait_until("the focus to move with " + key, [&before](const Screen& now) {
        return now.focused() != nullptr && now.description() != before;
    });
}

void Road::go(const std::string& key, const std::string& name) {
    for (int steps = 0; steps < most_steps_to_a_widget; ++steps) {
        move(key);
        if (has_focus(operator_.screen(), name))
            return;
    }
    throw station::NotSeen(key + " does not lead to '" + name + "'");
}

std::vector<std::string> Road::go_to_header(const std::string& name) {
    std::vector<std::string> keys;
    for (;;) {
        const Screen screen = operator_.screen();
        const station::Widget* const focused = screen.focused();
        const station::Widget* const wanted = screen.find(name);
        if (focused == nullptr || wanted == nullptr)
            throw station::NotSeen("no way to '" + name + "'; the screen shows: " + screen.description());
        if (focused->name == name)
            return keys;
        if (focused->y >= wanted->y + wanted->height)
            keys.emplace_back("Up");
        else
            keys.emplace_back(focused->x < wanted->x ? "Right" : "Left");
        move(keys.back());
    }
}

void Road::open_picker(const std::string& title, int first, int last) {
    operator_.press("Return");
    operator_.wait_for(title);
    operator_.wait_for_value(first);
    operator_.press(last > first ? "Right" : "Left", std::abs(last - first));
    operator_.wait_for_value(last);
}

void Road::choose(const std::string& title, int value) {
    operator_.press("Return");
    operator_.wait_until_gone(title);
    operator_.wait_for_focus(std::to_string(value));
}

void Road::expect_asked(const std::vector<std::string>& calls) {
    expect_soon("the NCP host to be asked " + testing::PrintToString(calls),
                [this, &calls] { return asked().size() >= calls_seen_ + calls.size(); });
    std::vector<std::string> now = asked();
    now.erase(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(calls_seen_));
    EXPECT_EQ(now, calls);
    calls_seen_ += now.size();
}

long Road::count_until(const std::function<bool(long)>& is_as_wanted) {
    long shown = 0;
    operator_.wait_until("another number of packets", [&](const station::Screen&) {
        operator_.press("Return");
        const std::string label = "Received Packets: ";
        for (const std::string& text : operator_.texts())
            if (text.starts_with(label) && text.size() > label.size() && text[label.size()] != '?')
                shown = std::stol(text.substr(label.size()));
        return is_as_wanted(shown);
    });
    return shown;
}
