/** The Zigbee host daemon: joins the host's terminal to the radio module behind cpcd. */
#include "base/local_socket.h"
#include "base/program.h"
#include "base/terminal.h"
#include "relay.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

using namespace simulator;

struct Options {
    std::string radio;
    std::string terminal;
    bool verbose = false;
};

Options read_options(int argc, char** argv) {
    Options options;
    for (int option = getopt(argc, argv, "r:p:v"); option != -1; option = getopt(argc, argv, "r:p:v")) {
        if (option == 'r')
            options.radio = optarg;
        if (option == 'p')
            options.terminal = optarg;
        if (option == 'v')
            options.verbose = true;
        if (option == '?')
            throw std::runtime_error("usage: zigbeed -r RADIO -p TERMINAL [-v]");
    }
    if (options.terminal.empty())
        throw std::runtime_error("no terminal given with -p");
    return options;
}

/** The instance in "spinel+cpc://INSTANCE?PARAMETERS". */
std::string instance_of(const std::string& radio) {
    const std::string scheme = "spinel+cpc://";
    if (radio.rfind(scheme, 0) != 0)
        throw std::runtime_error("not a radio: " + radio);
    return radio.substr(scheme.size(), radio.find('?') - scheme.size());
}

/** cpcd is started at about the same time, so it is given some seconds. */
FileDescriptor connect_patiently(const std::string& path) {
    constexpr int attempts = 100;
    constexpr int pause_milliseconds = 50;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (auto connection = connect_to(path))
            return connection;
        poll(nullptr, 0, pause_milliseconds);
    }
    throw std::runtime_error("cpcd does not answer at " + path);
}

[[noreturn]] void relay(int terminal, int radio) {
    while (true) {
        auto waiting = std::to_array<pollfd>({{terminal, POLLIN, 0}, {radio, POLLIN, 0}});
        if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
            throw std::runtime_error("cannot wait");
        if (waiting[0].revents != 0 && pass_on(terminal, radio) == Passed::closed) {
            throw std::runtime_error("the terminal has hung up");
        }
        if (waiting[1].revents != 0 && pass_on(radio, terminal) == Passed::closed) {
            throw std::runtime_error("cpcd is gone");
        }
    }
}

void run(int argc, char** argv, const ComponentLog& log) {
    const auto options = read_options(argc, argv);
    const auto radio = connect_patiently(socket_path(instance_of(options.radio)));
    const auto terminal = open_terminal(options.terminal);
    if (!terminal)
        throw std::runtime_error(options.terminal + ": " + std::strerror(errno));
    if (options.verbose)
        log.note(options.terminal, " joined to ", options.radio);
    relay(terminal.get(), radio.get());
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    return run_program("zigbeed",
                       [&](const auto& log) { run(argc, argv, log); }); // it ends well only by a signal
}
