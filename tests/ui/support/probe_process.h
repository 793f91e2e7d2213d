/** A running framework probe, read and steered from a test. */
#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace test {

/** The probe program in a process of its own; ended when the object goes. */
class ProbeProcess {
public:
    /** Starts the probe with these arguments; `program` is a copy of it, when not empty. */
    explicit ProbeProcess(std::vector<std::string> arguments = {}, std::string program = "");
    ~ProbeProcess();
    ProbeProcess(const ProbeProcess&) = delete;
    ProbeProcess& operator=(const ProbeProcess&) = delete;

    /** Sends one command line. */
    void send(const std::string& command) const;

    /** Waits for a line that begins with `begin`, skipping others; the line, or "" after `limit` or at the
     * end. */
    std::string await(const std::string& begin, std::chrono::milliseconds limit = std::chrono::seconds(10));

    /** All lines printed from now on until `time` is over or the process ends. */
    std::vector<std::string> lines_for(std::chrono::milliseconds time);

    /**
     * Waits for the end: the exit status, or 128 + the signal's number. What was printed can still be read;
     * the end of the output is no sign of the end, for a cache daemon that EFL starts holds it open for two
     * seconds more.
     */
    int wait();

    /** How often the process's threads gave up the processor so far. */
    [[nodiscard]] long context_switches() const;

    [[nodiscard]] pid_t id() const { return id_; }

private:
    /** The next line, or "" when none came by `end`. */
    std::string next_line(std::chrono::steady_clock::time_point end);

    pid_t id_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string pending_;
};

} // namespace test
