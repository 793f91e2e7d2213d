#include "benchmarks.h"
#include "bus_watch.h"
#include "measured_program.h"
#include "table.h"

#include "base/bus.h"
#include "model/process_lifecycle.h"
#include "model/util.h"
#include "support/processes.h"
#include "support/television.h"

#include <functional>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace {

/** What this thread has slept by agreement. */
thread_local bench::Clock::duration slept{};

} // namespace

// The linker puts this in place of usleep (-Wl,--wrap=usleep).
extern "C" {
decltype(usleep) __real_usleep;
decltype(usleep) __wrap_usleep;
int __wrap_usleep(useconds_t microseconds) {
    const auto begun = bench::Clock::now();
    const int result = __real_usleep(microseconds);
    slept += bench::Clock::now() - begun;
    return result;
}
}

namespace bench {
namespace {

using namespace std::chrono_literals;

struct Peer {
    const char* name;
    std::vector<std::string> command;
    /** The keys from its first page to where the NCP host's "ready" opens the test page. */
    std::vector<const char*> way_to_test;
    /** The keys from the test page's first focus to "Start Stream". */
    std::vector<const char*> way_to_stream;
};

const Peer eldbus{
    .name = "Eldbus", .command = {BARE_RADIO_PAGE_PROGRAM}, .way_to_test = {}, .way_to_stream = {}};
const Peer gdbus{
    .name = "GDBus", .command = {BARE_RADIO_PAGE_PROGRAM, "gdbus"}, .way_to_test = {}, .way_to_stream = {}};
const Peer velmora{.name = own_name,
                   .command = {VELMORA_PROGRAM},
                   .way_to_test = {"Return"},
                   .way_to_stream = {"Down", "Down"}};

/** A program before its test page. */
class RadioPage {
public:
    RadioPage(const Peer& peer, DrawingWatch& watch) : program_(peer.command, watch), watch_(watch) {
        for (const char* const key : peer.way_to_test)
            watch.press({}, key);
        watch.wait_for_quiet(quiet);
    }

    /** Has the NCP host say "ready". @return when the event passed the bus. */
    Clock::time_point say_ready() {
        watch_.forget();
        simulator::Client(simulator::connect_to_system_bus())
            .call(simulator::ncp_host, "Emit", g_variant_new("(s)", "ready"));
        return bus_.next("ncp_event");
    }

    BusWatch& bus() { return bus_; }

private:
    BusWatch bus_;
    MeasuredProgram program_;
    DrawingWatch& watch_;
};

void set_time(benchmark::State& state, Clock::duration time) {
    state.SetIterationTime(std::chrono::duration<double>(time).count());
}

void event_to_page(benchmark::State& state, const Peer& peer, DrawingWatch& watch) {
    RadioPage page(peer, watch);
    const auto said = page.say_ready();
    if (const auto drawing = watch.next(2s))
        set_time(state, drawing->moment - said);
    else
        state.SkipWithError("nothing is drawn after the event");
}

void key_to_call(benchmark::State& state, const Peer& peer, DrawingWatch& watch) {
    RadioPage page(peer, watch);
    page.say_ready();
    const auto pressed = watch.press(peer.way_to_stream, "Return");
    set_time(state, page.bus().next("ember_start_stream") - pressed);
}

/** Starts and stops the radio stack; one of the two counts, without what is slept by agreement. */
void stack(benchmark::State& state, bool start_counts) {
    const simulator::StandardErrorTo log(log_file());
    const auto time_of = [](const auto& action) {
        const auto begun = Clock::now();
        slept = {};
        action();
        return Clock::now() - begun - slept;
    };
    for (auto _ : state) {
        const auto start = time_of([] { prepare_background_app(); });
        while (simulator::running_processes({"cpcd", "socat", "zigbeed"}).size() < 3)
            std::this_thread::sleep_for(1ms);
        const auto stop = time_of(kill_background_app);
        set_time(state, start_counts ? start : stop);
    }
}

/** Memory and open descriptors after whole TX tests, each with a radio stack of its own. */
void tests(benchmark::State& state, int count, DrawingWatch& watch) {
    for (auto _ : state) {
        BusWatch bus;
        const MeasuredProgram program({VELMORA_PROGRAM}, watch);
        watch.press({}, "Return");
        for (int test = 0; test < count; ++test) {
            watch.press({}, "Return");
            bus.next("ember_start");
            watch.press({"Down", "Down", "Down"}, "Return");
            bus.next("ember_stop");
        }
        watch.wait_for_quiet(quiet);
        report(state, program.megabytes(), "MB, " + std::to_string(program.descriptors()) + " descriptors");
    }
}

benchmark::internal::Benchmark* add(const std::string& what, const char* who,
                                    const std::function<void(benchmark::State&)>& measure) {
    return benchmark::RegisterBenchmark(measurement(what, who).c_str(), measure)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
}

using Measure = void (*)(benchmark::State&, const Peer&, DrawingWatch&);

void add_of_each(std::initializer_list<const Peer*> peers, const char* what, DrawingWatch& watch,
                 Measure measure) {
    for (const Peer* peer : peers)
        add(what, peer->name, [measure, peer, &watch](benchmark::State& state) {
            for (auto _ : state)
                measure(state, *peer, watch);
        })->Repetitions(15);
}

} // namespace

void add_radio_benchmarks(DrawingWatch& watch) {
    add_of_each({&eldbus, &gdbus, &velmora}, "Return to the method call", watch, key_to_call);
    add_of_each({&eldbus, &velmora}, "event to the page's first picture", watch, event_to_page);
    add("start of the radio stack", own_name, [](auto& state) { stack(state, true); })->Repetitions(9);
    add("stop of the radio stack", own_name, [](auto& state) { stack(state, false); })->Repetitions(9);
    for (const int count : {1, 10, 100})
        add("after " + std::to_string(count) + (count == 1 ? " test" : " tests"), own_name,
            [count, &watch](auto& state) { tests(state, count, watch); })
            ->Repetitions(1);
}

} // namespace bench
