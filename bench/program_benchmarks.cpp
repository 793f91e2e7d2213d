#include "bus_monitor.h"
#include "measured_program.h"

#include "support/television.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace bench {
namespace {

using namespace std::chrono_literals;

struct Program {
    const char* name;
    std::vector<std::string> command;
    /** A fixed delay before the application draws, in which its bus client settles. */
    std::chrono::milliseconds fixed_delay{};
    /** The keys from the first page to the page on which the NCP host's "ready" opens the test page. */
    std::vector<const char*> keys_to_test{};
    /** The keys that, from the test page's initial focus, press "Start Stream". */
    std::vector<const char*> keys_to_stream{"Return"};
};
const Program velmora{own_name, {VELMORA_PROGRAM}, 500ms, {"Return"}, {"Down", "Down", "Return"}};
const Program elementary{.name = "Elementary", .command = {BARE_PAGE_PROGRAM}};
const Program radio_page{.name = "Elementary and GDBus", .command = {BARE_RADIO_PAGE_PROGRAM}};

Value start(const Program& measured) {
    const MeasuredProgram program(measured.command);
    return milliseconds(program.time_to_page() - measured.fixed_delay);
}

Value memory(const Program& measured) {
    const MeasuredProgram program(measured.command);
    std::this_thread::sleep_for(2s - program.time_to_page());
    return {program.megabytes(), "MB"};
}

/** The time from the last key to the first drawing after it. */
Value key_to_picture(const Program& measured, const std::vector<const char*>& keys) {
    MeasuredProgram program(measured.command);
    const auto pressed = program.screen().press(keys);
    return milliseconds(program.screen().wait_for_drawing() - pressed);
}

const std::vector<const char*> keys_to_popup{"Right", "Right", "Return"};

/** The number of frames that a 60 Hz screen repeats while a popup opens. */
Value popup_drops(const Program& measured) {
    MeasuredProgram program(measured.command);
    program.screen().press(keys_to_popup);
    auto before = program.screen().wait_for_drawing();
    long dropped = 0;
    while (const auto drawn = program.screen().next(quiet)) {
        const std::chrono::duration<double> gap = *drawn - before;
        dropped += std::max(0L, std::lround(gap.count() * 60.0) - 1);
        before = *drawn;
    }
    return {static_cast<double>(dropped), ""};
}

/** A program that waits for the NCP host's "ready" to open its test page. */
struct RadioPage {
    explicit RadioPage(const Program& measured) : program(measured.command) {
        program.screen().press(measured.keys_to_test);
        program.screen().wait_until_quiet();
    }
    /** Makes the NCP host send "ready". @return when the event was on the bus. */
    Clock::time_point say_ready() {
        program.screen().forget();
        simulator::Client(simulator::connect_to_system_bus())
            .call(simulator::ncp_host, "Emit", g_variant_new("(s)", "ready"));
        return bus.next("ncp_event");
    }
    BusMonitor bus;
    MeasuredProgram program;
};

Value event_to_picture(const Program& measured) {
    RadioPage page(measured);
    const auto said = page.say_ready();
    return milliseconds(page.program.screen().wait_for_drawing() - said);
}

/** Measures the time from the key that presses "Start Stream" to its effect. */
std::function<Value(const Program&)> key_to(Clock::time_point (*effect)(RadioPage&)) {
    return [effect](const Program& measured) {
        RadioPage page(measured);
        page.say_ready();
        const auto pressed = page.program.screen().press(measured.keys_to_stream);
        return milliseconds(effect(page) - pressed);
    };
}

/** Memory and open descriptors after complete TX tests, each with a new radio stack. */
Value tests(int count) {
    BusMonitor bus;
    MeasuredProgram program(velmora.command);
    program.screen().press({"Return"});
    for (int test = 0; test < count; ++test) {
        program.screen().press({"Return"});
        bus.next("ember_start");
        program.screen().press({"Down", "Down", "Down", "Return"});
        bus.next("ember_stop");
    }
    program.screen().wait_until_quiet();
    return {program.megabytes(), "MB, " + std::to_string(program.open_descriptors()) + " descriptors"};
}

void add_for_each(const char* what, int repetitions, const std::vector<const Program*>& peers,
                  const std::function<Value(const Program&)>& measure) {
    add(what, own_name, repetitions, [measure] { return measure(velmora); });
    for (const Program* const peer : peers)
        add(what, peer->name, repetitions, [measure, peer] { return measure(*peer); });
}

[[maybe_unused]] const bool added = [] {
    const auto picture_after = [](const std::vector<const char*>& keys) {
        return [keys](const Program& measured) { return key_to_picture(measured, keys); };
    };
    add_for_each("start to first drawn page", 15, {&elementary}, start);
    add_for_each("memory after two seconds", 7, {&elementary}, memory);
    add_for_each("arrow key to first changed frame", 9, {&elementary}, picture_after({"Right", "Left"}));
    add_for_each("tab switch to its first frame", 9, {&elementary}, picture_after({"Return"}));
    add_for_each("popup to its first frame", 9, {&elementary}, picture_after(keys_to_popup));
    add_for_each("frames dropped while a popup opens", 5, {&elementary}, popup_drops);
    add_for_each("Return to the pressed frame", 15, {&radio_page},
                 key_to([](RadioPage& page) { return page.program.screen().wait_for_drawing(); }));
    add_for_each("Return to the method call", 15, {&radio_page},
                 key_to([](RadioPage& page) { return page.bus.next("ember_start_stream"); }));
    add_for_each("event to the page's first frame", 15, {&radio_page}, event_to_picture);
    for (const int count : {1, 10, 100})
        add("after " + std::to_string(count) + (count == 1 ? " test" : " tests"), own_name, 1,
            [count] { return tests(count); });
    return true;
}();

} // namespace
} // namespace bench
