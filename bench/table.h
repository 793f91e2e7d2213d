/** The medians of all measurements as a table, beside each other and as ratios. */
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bench {

/** The name of the application's own measurement in a row. */
constexpr const char* own_name = "Velmora";
/** A measurement whose value is no time has it in this counter. */
constexpr const char* value_counter = "value";

/** The name of a measurement: what is measured, of whom. */
std::string measurement(const std::string& what, const std::string& who);

/** Gives a measurement a value that is no time. */
void report(benchmark::State& state, double value, const std::string& unit);

/**
 * Collects the median of each measurement (the value of one that is not repeated), which `measurement` has named, and
 * prints a row for each thing measured: what the peers need, what we need, and our ratio to each peer, as Markdown.
 */
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Median {
        double value;
        std::string unit;
    };
    std::map<std::int64_t, std::string> order_; /**< what was measured, as it was registered */
    std::map<std::string, std::map<std::string, Median>> rows_;
};

} // namespace bench
