#include "measurement.h"

#include "base/process.h"
#include "support/standard_error_to.h"

#include <exception>

namespace bench {
namespace {

benchmark::internal::Benchmark* add_loop(const std::string& what, const std::string& program,
                                         const std::function<void(benchmark::State&)>& loop) {
    return benchmark::RegisterBenchmark((what + '/' + program).c_str(), [loop](benchmark::State& state) {
        // The application's log goes to a file, as on a television.
        static const simulator::StandardErrorTo log(simulator::written_to("/tmp/measured.log").error);
        try {
            loop(state);
        } catch (const std::exception& error) {
            state.SkipWithError(error.what());
        }
    });
}

} // namespace

void add(const std::string& what, const std::string& program, int repetitions,
         const std::function<Value()>& measure) {
    const auto loop = [measure](benchmark::State& state) {
        while (state.KeepRunning()) {
            const Value value = measure();
            state.counters["value"] = value.number;
            state.SetLabel(value.unit);
        }
    };
    add_loop(what, program, loop)->Iterations(1)->Repetitions(repetitions);
}

void add_call(const std::string& what, const std::string& program,
              const std::function<std::function<void()>()>& prepare) {
    const auto loop = [prepare](benchmark::State& state) {
        const std::function<void()> call = prepare();
        while (state.KeepRunning())
            call();
    };
    add_loop(what, program, loop)->UseRealTime()->Unit(benchmark::kMicrosecond);
}

} // namespace bench
