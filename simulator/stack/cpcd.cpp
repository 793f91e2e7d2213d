/** The co-processor daemon: hands one client the radio module's serial line. */
#include "base/local_socket.h"
#include "base/program.h"
#include "base/terminal.h"
#include "cpcd_configuration.h"
#include "relay.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

using namespace simulator;

std::string configuration_path(int argc, char** argv) {
    const std::string option = "--conf=";
    if (argc != 2 || std::string(argv[1]).rfind(option, 0) != 0)
        throw std::runtime_error("usage: cpcd --conf=FILE");
    return argv[1] + option.size();
}

void accept_client(int listener, FileDescriptor& client, const ComponentLog& log) {
    FileDescriptor caller(accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!caller)
        return;
    if (client) {
        log.error("a second client is refused");
        return;
    }
    client = std::move(caller);
    log.note("client connected");
}

/** Serves one client after the other until the serial line is gone. */
void serve(int serial, int listener, const ComponentLog& log) {
    FileDescriptor client;
    while (true) {
        auto waiting =
            std::to_array<pollfd>({{serial, POLLIN, 0}, {listener, POLLIN, 0}, {client.get(), POLLIN, 0}});
        if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
            throw std::runtime_error("cannot wait");
        if (waiting[0].revents != 0 && pass_on(serial, client.get()) == Passed::closed)
            return;
        if (waiting[2].revents != 0 && pass_on(client.get(), serial) == Passed::closed) {
            log.note("client gone");
            client.reset();
        }
        if (waiting[1].revents != 0)
            accept_client(listener, client, log);
    }
}

void run(int argc, char** argv, const ComponentLog& log) {
    const auto configuration = read_cpcd_configuration(configuration_path(argc, argv));
    const auto serial = open_terminal(configuration.serial_device, configuration.serial_speed);
    if (!serial)
        throw std::runtime_error(configuration.serial_device + ": " + std::strerror(errno));
    const auto path = socket_path("cpcd_0");
    mkdir("/run/cpcd", 0755);
    const auto listener = listen_at(path, 1);
    if (!listener)
        throw std::runtime_error(path + ": " + std::strerror(errno));
    log.note(configuration.serial_device, " at ", configuration.serial_speed);
    serve(serial.get(), listener.get(), log);
    throw std::runtime_error(configuration.serial_device + " has hung up");
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    return run_program("cpcd",
                       [&](const auto& log) { run(argc, argv, log); }); // it ends well only by a signal
}
