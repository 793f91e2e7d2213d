/** All that is measured, registered with Google Benchmark. */
#pragma once

#include "drawing_watch.h"

#include "base/process.h"
#include "support/standard_error_to.h"

namespace bench {

/** Whole programs on the television's screen. */
void add_page_benchmarks(DrawingWatch& watch);
/** One radio command over the system bus, by every library and command line that a person would pick. */
void add_command_benchmarks();
/** What the application and the NCP host do together: calls, events, the radio stack, whole tests. */
void add_radio_benchmarks(DrawingWatch& watch);
/** What reads and writes files. */
void add_file_benchmarks();

/** Where the application's log goes while it is measured in this process: to a file, as on a television. */
inline simulator::FileDescriptor log_file() { return simulator::written_to("/tmp/measured.log").error; }

} // namespace bench
