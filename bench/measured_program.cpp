#include "measured_program.h"

#include "support/processes.h"

#include <filesystem>
#include <iterator>

namespace bench {

using namespace std::chrono_literals;
using std::filesystem::directory_iterator;

MeasuredProgram::MeasuredProgram(const std::vector<std::string>& command)
    : process_(command, simulator::written_to("/tmp/measured_program.log")),
      page_drawn_(screen_.wait_for_drawing(0.9)) {}

MeasuredProgram::~MeasuredProgram() {
    process_.terminate();
    process_.wait_for_end(10s);
    screen_.wait_until_quiet();
}

std::string MeasuredProgram::proc(const char* file) const {
    return "/proc/" + std::to_string(process_.id()) + '/' + file;
}

double MeasuredProgram::megabytes() const {
    return static_cast<double>(simulator::sum_of(proc("status"), {"VmRSS:"})) / 1024.0;
}

long MeasuredProgram::open_descriptors() const {
    return std::distance(directory_iterator(proc("fd")), directory_iterator());
}

} // namespace bench
