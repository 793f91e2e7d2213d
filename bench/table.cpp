#include "table.h"

#include <iomanip>
#include <iostream>

namespace bench {
namespace {

/** What our ratio is to be at most, for the measurements of peers that have such a bound. */
const std::map<std::string, double> bounds{{"start to first drawn page/Elementary", 1.10},
                                           {"memory after two seconds/Elementary", 1.10},
                                           {"radio command/GDBus proxy call", 1.05},
                                           {"radio command/GDBus proxy call with four log lines", 1.05},
                                           {"arrow key to changed picture/Elementary", 1.00},
                                           {"Return to the method call/Eldbus", 1.00},
                                           {"Return to the method call/GDBus", 1.00}};

std::string bound_of(const std::string& measured) {
    const auto bound = bounds.find(measured);
    if (bound == bounds.end())
        return "";
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << bound->second;
    return text.str();
}

} // namespace

std::string measurement(const std::string& what, const std::string& who) { return what + '/' + who; }

void report(benchmark::State& state, double value, const std::string& unit) {
    state.counters[value_counter] = value;
    state.SetLabel(unit);
}

bool Table::ReportContext(const Context& /*context*/) { return true; }

void Table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred)
            GetErrorStream() << name << ": " << run.error_message << '\n';
        if (run.repetitions > 1 && run.aggregate_name != "median")
            continue;
        const auto slash = name.find('/');
        const std::string what = name.substr(0, slash);
        if (!rows_.contains(what))
            order_[run.family_index] = what;
        const auto value = run.counters.find(value_counter);
        rows_[what][name.substr(slash + 1)] =
            value != run.counters.end()
                ? Median{value->second, run.report_label}
                : Median{run.GetAdjustedRealTime(), benchmark::GetTimeUnitString(run.time_unit)};
    }
}

void Table::Finalize() {
    auto& out = GetOutputStream();
    out << "| what | peer | the peer | ours | ratio | to reach |\n|---|---|---|---|---|---|\n"
        << std::fixed << std::setprecision(2);
    for (const auto& [index, what] : order_) {
        const auto& row = rows_[what];
        const auto own = row.find(own_name);
        if (own == row.end())
            continue;
        const auto& [value, unit] = own->second;
        if (row.size() == 1)
            out << "| " << what << " | | | " << value << ' ' << unit << " | | |\n";
        for (const auto& [who, peer] : row) {
            if (who == own_name)
                continue;
            out << "| " << what << " | " << who << " | " << peer.value << ' ' << peer.unit << " | " << value
                << ' ' << unit << " | ";
            if (peer.value > 0)
                out << value / peer.value;
            out << " | " << bound_of(measurement(what, who)) << " |\n";
        }
    }
}

} // namespace bench
