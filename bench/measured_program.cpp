#include "measured_program.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr const char* program_log = "/tmp/measured_program.log";

/** The sum of the numbers that follow one of the names in a file of "Name: number" lines. */
long sum_of(const std::filesystem::path& path, std::initializer_list<std::string_view> names) {
    std::ifstream file(path);
    long sum = 0;
    std::string word;
    while (file >> word)
        for (const std::string_view name : names)
            if (long number = 0; word == name && file >> number)
                sum += number;
    return sum;
}

} // namespace

MeasuredProgram::MeasuredProgram(const std::string& path, DrawingWatch& watch)
    : watch_(watch), process_({path}, station::written_to(program_log)), page_drawn_(watch.next_page()) {}

MeasuredProgram::~MeasuredProgram() {
    process_.terminate();
    process_.wait_for_end(10s);
    watch_.wait_for_quiet(200ms);
}

double MeasuredProgram::megabytes() const {
    const std::string path = "/proc/" + std::to_string(number()) + "/smaps_rollup";
    return static_cast<double>(sum_of(path, {"Pss:"})) / 1024.0;
}

long MeasuredProgram::descriptors() const {
    const std::filesystem::directory_iterator all("/proc/" + std::to_string(number()) + "/fd");
    return std::distance(begin(all), end(all));
}

long MeasuredProgram::context_switches() const {
    long switches = 0;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(number()) + "/task"))
        switches +=
            sum_of(thread.path() / "status", {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
    return switches;
}

} // namespace bench
