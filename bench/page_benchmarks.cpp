#include "benchmarks.h"
#include "measured_program.h"
#include "table.h"

#include <functional>
#include <thread>

namespace bench {
namespace {

using namespace std::chrono_literals;

struct Peer {
    const char* name;
    const char* program;
    /** What the application waits by agreement before it draws: the bus client's time to settle. */
    std::chrono::duration<double> agreed_wait;
};

const Peer elementary{.name = "Elementary", .program = BARE_PAGE_PROGRAM, .agreed_wait = 0s};
const Peer velmora{.name = own_name, .program = VELMORA_PROGRAM, .agreed_wait = 500ms};

using Measure = std::function<void(benchmark::State&, const Peer&, DrawingWatch&)>;

/** Registers a measurement of whole processes: one in each repetition. */
void add(const char* what, int repetitions, DrawingWatch& watch, const Measure& measure) {
    for (const Peer* peer : {&elementary, &velmora})
        benchmark::RegisterBenchmark(measurement(what, peer->name).c_str(),
                                     [measure, peer, &watch](benchmark::State& state) {
                                         for (auto _ : state)
                                             measure(state, *peer, watch);
                                     })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->Repetitions(repetitions);
}

void report(benchmark::State& state, double value, const char* unit) {
    state.counters[value_counter] = value;
    state.SetLabel(unit);
}

void start(benchmark::State& state, const Peer& peer, DrawingWatch& watch) {
    const MeasuredProgram program(peer.program, watch);
    state.SetIterationTime((program.time_to_page() - peer.agreed_wait).count());
}

void memory(benchmark::State& state, const Peer& peer, DrawingWatch& watch) {
    const MeasuredProgram program(peer.program, watch);
    std::this_thread::sleep_for(2s - program.time_to_page());
    report(state, program.megabytes(), "MB");
}

void idleness(benchmark::State& state, const Peer& peer, DrawingWatch& watch) {
    const MeasuredProgram program(peer.program, watch);
    std::this_thread::sleep_for(1s);
    const long before = program.context_switches();
    std::this_thread::sleep_for(5s);
    report(state, static_cast<double>(program.context_switches() - before), "");
}

} // namespace

void add_page_benchmarks(DrawingWatch& watch) {
    add("start to first drawn page", 15, watch, start);
    add("memory after two seconds", 7, watch, memory);
    add("context switches in 5 s of idleness", 3, watch, idleness);
}

} // namespace bench
