/** The simulator; sandbox/init provisions the folders and execs it. */
#include "base/options.h"
#include "television.h"

#include <csignal>
#include <iostream>

namespace {

constexpr int cannot_start = 125;

int run(int argc, char** argv) {
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); // components inherit no descriptor from outside
    const simulator::Options options(argc, argv);
    const std::string program = argv[0];
    simulator::Television television(options, program.substr(0, program.rfind('/')));
    const auto end = +[](gpointer data) -> gboolean {
        static_cast<simulator::Television*>(data)->end();
        return G_SOURCE_CONTINUE;
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        g_unix_signal_add(signal, end, &television);
    const int status = television.run();
    // Tells simulator/tv, outside, that the television has shut down cleanly.
    if (options.has("status-descriptor"))
        dprintf(static_cast<int>(options.number("status-descriptor", -1)), "%d\n", status);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "television: " << error.what() << '\n';
        return cannot_start;
    }
}
