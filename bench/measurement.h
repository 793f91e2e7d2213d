/** Registers measurements with Google Benchmark; each is called WHAT/PROGRAM, as bench/table wants it. */
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <string>

namespace bench {

using Clock = std::chrono::steady_clock;

/** The application as PROGRAM. */
constexpr const char* own_name = "Velmora";

struct Value {
    double number;
    std::string unit;
};
inline Value milliseconds(std::chrono::duration<double, std::milli> time) { return {time.count(), "ms"}; }

/** Adds a measurement that yields one value for each repetition. An exception ends that repetition alone. */
void add(const std::string& what, const std::string& program, int repetitions,
         const std::function<Value()>& measure);

/** Adds a measurement of the time that a call takes, repeated until it is exact. @param prepare returns the call. */
void add_call(const std::string& what, const std::string& program,
              const std::function<std::function<void()>()>& prepare);

} // namespace bench
