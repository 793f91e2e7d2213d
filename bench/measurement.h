/** Registers measurements with Google Benchmark, named WHAT/PROGRAM for bench/table. */
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <string>

namespace bench {

using Clock = std::chrono::steady_clock;

/** The application's name, used as PROGRAM. */
constexpr const char* own_name = "Velmora";

struct Value {
    double number;
    std::string unit;
};
inline Value milliseconds(std::chrono::duration<double, std::milli> time) { return {time.count(), "ms"}; }

/** Adds a measurement with one value per repetition. An exception fails only that repetition. */
void add(const std::string& what, const std::string& program, int repetitions,
         const std::function<Value()>& measure);

/** Measures a call's duration, repeating the call for precision. @param prepare returns the call. */
void add_call(const std::string& what, const std::string& program,
              const std::function<std::function<void()>()>& prepare);

} // namespace bench
