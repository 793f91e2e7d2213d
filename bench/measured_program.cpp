#include "measured_program.h"

#include "support/processes.h"

#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr const char* program_log = "/tmp/measured_program.log";

} // namespace

MeasuredProgram::MeasuredProgram(const std::vector<std::string>& command, DrawingWatch& watch)
    : watch_(watch), process_(command, simulator::written_to(program_log)), page_drawn_(watch.next_page()) {}

MeasuredProgram::~MeasuredProgram() {
    process_.terminate();
    process_.wait_for_end(10s);
    watch_.wait_for_quiet(200ms);
}

double MeasuredProgram::megabytes() const {
    const std::string path = "/proc/" + std::to_string(number()) + "/smaps_rollup";
    return static_cast<double>(simulator::sum_of(path, {"Pss:"})) / 1024.0;
}

long MeasuredProgram::descriptors() const {
    const std::filesystem::directory_iterator all("/proc/" + std::to_string(number()) + "/fd");
    return std::distance(begin(all), end(all));
}

long MeasuredProgram::context_switches() const {
    long switches = 0;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(number()) + "/task"))
        switches += simulator::sum_of(thread.path() / "status",
                                      {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
    return switches;
}

} // namespace bench
