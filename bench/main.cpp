// Measures the application beside its bare peers, by turns, and prints medians and ratios. Runs inside a television.
#include "benchmarks.h"
#include "table.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    std::vector<std::string> texts{argv[0], "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.01",
                                   "--benchmark_repetitions=61"};
    texts.insert(texts.end(), argv + 1, argv + argc); // the caller's options win
    std::vector<char*> arguments;
    arguments.reserve(texts.size());
    for (std::string& text : texts)
        arguments.push_back(text.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    try {
        bench::DrawingWatch watch;
        bench::add_page_benchmarks(watch);
        bench::add_radio_benchmarks(watch);
        bench::add_command_benchmarks();
        bench::add_file_benchmarks();
        bench::Table table;
        benchmark::RunSpecifiedBenchmarks(&table);
    } catch (const std::exception& error) {
        std::cerr << "bench_measure: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
